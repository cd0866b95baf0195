// Bundles of the build tree and what they export.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

// Opens a bundle, which stays open; ends the test program with a message when that fails.
CFBundleRef OpenBundle(const char* path);

// A function or variable of a bundle's executable; ends the test program when it is not there.
void* AddressIn(CFBundleRef bundle, const char* name);

template <typename Function>
Function* FunctionOf(CFBundleRef bundle, const char* name) {
  return reinterpret_cast<Function*>(AddressIn(bundle, name));
}
