#include "SokExtShared/SokEDK/Source/sonkelpdk/binding.h"

#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"

void* FindEntryPoint(const char* name) noexcept {
  const CFStringRef function = CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingMacRoman);
  if (function == nullptr) return nullptr;
  const CFBundleRef engine = GetSonkelBundleRef();
  void* const address = engine != nullptr ? CFBundleGetFunctionPointerForName(engine, function) : nullptr;
  CFRelease(function);
  return address;
}
