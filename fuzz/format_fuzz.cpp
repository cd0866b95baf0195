// String formats of numbers and characters, any units between them. Directives that follow a pointer are left out:
// their arguments are the caller's word.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <cstring>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::vector<UniChar> units(size / 2);
  std::memcpy(units.data(), data, units.size() * 2);
  unsigned long digits = 0;
  int percent_signs = 0;
  for (UniChar& unit : units) {
    if (unit == 's' || unit == 'S' || unit == '@' || unit == 'P' || unit == 'n' || unit == 'L') unit = 'd';
    digits = unit >= '0' && unit <= '9' ? digits * 10 + unit - '0' : 0;
    if (digits > 100000) return 0;                     // a width of gigabytes is only slow
    if (unit == '%' && ++percent_signs > 6) return 0;  // each may take three arguments
  }
  const CFStringRef format =
      CFStringCreateWithCharacters(kCFAllocatorDefault, units.data(), static_cast<CFIndex>(units.size()));
  const CFStringRef text =
      CFStringCreateWithFormat(kCFAllocatorDefault, nullptr, format, 1L, -2L, 3L, 0L, 5L, 0x12345678L, 1.5, -2e300, 0.0,
                               4L, 5L, 6L, 7L, 8L, 9L, 10L, 11L, 12L, 1e-9, 7.0, 13L, 14L, 15L);
  if (text != nullptr) {
    std::vector<UniChar> result(static_cast<std::size_t>(CFStringGetLength(text)));
    CFStringGetCharacters(text, CFRangeMake(0, static_cast<CFIndex>(result.size())), result.data());
    CFRelease(text);
  }
  CFRelease(format);
  return 0;
}
