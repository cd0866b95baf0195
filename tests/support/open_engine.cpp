#include "tests/support/open_engine.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"

namespace {

[[noreturn]] void Fail(const char* what, const char* name) {
  std::fprintf(stderr, "%s: %s\n", name, what);
  std::abort();
}

}  // namespace

CFBundleRef OpenEngine(const char* path) {
  const CFURLRef url = CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path), static_cast<CFIndex>(std::strlen(path)), true);
  const CFBundleRef bundle = url != nullptr ? CFBundleCreate(kCFAllocatorDefault, url) : nullptr;
  if (bundle == nullptr) Fail("no such bundle", path);
  CFRelease(url);
  gSonkelBundle = bundle;
  return bundle;
}

void* EngineFunction(CFBundleRef bundle, const char* name) {
  const CFStringRef text = CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingMacRoman);
  void* const function = CFBundleGetFunctionPointerForName(bundle, text);
  CFRelease(text);
  if (function == nullptr) Fail("not in the engine bundle", name);
  return function;
}
