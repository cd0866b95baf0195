#include "tests/support/bundles.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

template <typename Found>
Found Expect(Found found, const char* what) {
  if (found != nullptr) return found;
  std::fprintf(stderr, "%s: not there\n", what);
  std::abort();
}

}  // namespace

CFBundleRef OpenBundle(const char* path) {
  const CFURLRef url = CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path), static_cast<CFIndex>(std::strlen(path)), true);
  const CFBundleRef bundle = Expect(CFBundleCreate(kCFAllocatorDefault, url), path);
  CFRelease(url);
  return bundle;
}

void* AddressIn(CFBundleRef bundle, const char* name) {
  const CFStringRef text = CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingMacRoman);
  void* const address = Expect(CFBundleGetFunctionPointerForName(bundle, text), name);
  CFRelease(text);
  return address;
}
