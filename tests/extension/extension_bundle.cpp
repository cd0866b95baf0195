#include "tests/extension/extension_bundle.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

CFBundleRef OpenBundle(const char* path) {
  const CFURLRef url = CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path),
                                                               static_cast<CFIndex>(std::strlen(path)), true);
  static const CFBundleRef bundle = CFBundleCreate(kCFAllocatorDefault, url);  // kept, as a host keeps it
  CFRelease(url);
  return bundle;
}

}  // namespace

ExtensionBundle::ExtensionBundle() : bundle_(OpenBundle(SOK_EXTENSION_BUNDLE)) {
  if (Find("main") == nullptr) {
    std::fprintf(stderr, "%s does not load\n", SOK_EXTENSION_BUNDLE);
    std::exit(1);
  }
}

void* ExtensionBundle::Find(const char* name) const {
  const CFStringRef function = CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingMacRoman);
  void* const address = CFBundleGetFunctionPointerForName(bundle_, function);
  CFRelease(function);
  return address;
}

int ExtensionBundle::Main() const {
  char name[] = "host";
  char* list[] = {name, nullptr};
  return Get<int(int, char**)>("main")(1, list);
}

int ExtensionBundle::Invoke(int index, EREGION* region, void* host) const {
  return Get<int(void*, int, EREGION*)>("SonkelExtensionInvoke")(host, index, region);
}

std::string ExtensionBundle::ExecutablePath() { return SOK_EXTENSION_BUNDLE "/Contents/MacOS/MeasureRests"; }

EREGION Region(int first_slot, int last_slot, int first_measure, int last_measure) {
  EREGION region{};
  region.start.slot = static_cast<short>(first_slot);
  region.start.measure = static_cast<short>(first_measure);
  region.end.slot = static_cast<short>(last_slot);
  region.end.measure = static_cast<short>(last_measure);
  region.start.position = 512;  // whole measures all the same
  region.end.position = 3;
  return region;
}
