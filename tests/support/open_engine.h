// Opening a bundle of the build tree as the host's engine.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

// Opens a bundle, makes it the one that the kit's wrappers search (gSonkelBundle) and returns it; ends the test
// program with a message when that fails.
CFBundleRef OpenEngine(const char* path);

// A function of an open bundle; ends the test program when it is not there.
void* EngineFunction(CFBundleRef bundle, const char* name);
