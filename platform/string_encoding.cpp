// Strings made of bytes and turned into bytes.

#include <Carbon/Carbon.h>

#include <limits>

#include "platform/encoding.h"
#include "platform/string_object.h"

TextEncoding GetApplicationTextEncoding() { return kCFStringEncodingMacRoman; }

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* bytes, CFStringEncoding encoding) {
  if (bytes == nullptr) return nullptr;
  return sok::OrElse<CFStringRef>(nullptr, [&]() -> CFStringRef {
    const std::string_view text = bytes;
    std::optional<std::size_t> count;
    sok::Ref<sok::String> made = sok::String::Make(text.size(), [&](char16_t* units) {
      count = sok::Decode(text, encoding, units);
      return count.value_or(0);
    });
    return count ? made.Detach() : nullptr;
  });
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternal, UInt8* buffer, CFIndex size, CFIndex* used) {
  if (used != nullptr) *used = 0;
  const std::u16string_view units = sok::View(string);
  if (string == nullptr || range.location < 0 || range.length < 0 || size < 0 ||
      static_cast<std::size_t>(range.location) > units.size()) {
    return 0;
  }
  // No room at all counts like no buffer where UTF-8 has more to do than copy ASCII.
  if (size == 0 && encoding == kCFStringEncodingUTF8 && !sok::IsAscii(units)) buffer = nullptr;
  const sok::Encoded done =
      sok::Encode(units.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length)),
                  encoding, lossByte, isExternal != 0, buffer, static_cast<std::size_t>(size));
  if (used != nullptr) *used = static_cast<CFIndex>(done.bytes);
  return static_cast<CFIndex>(done.units);
}

Boolean CFStringGetPascalString(CFStringRef string, StringPtr buffer, CFIndex size, CFStringEncoding encoding) {
  const CFIndex length = CFStringGetLength(string);
  if (string == nullptr || size <= 0 || length > 255) return false;
  if (length >= size && sok::HoldsAscii(encoding) && sok::IsAscii(string->units())) return false;
  CFIndex used = 0;
  const CFIndex done = CFStringGetBytes(string, {0, length}, encoding, 0, false, buffer + 1, size - 1, &used);
  buffer[0] = static_cast<unsigned char>(done == length ? used : 0);
  return done == length;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  CFIndex factor = 1;
  switch (encoding) {
    case kCFStringEncodingUTF8:
      factor = 3;
      break;
    case kCFStringEncodingUTF16:
    case kCFStringEncodingUTF16BE:
    case kCFStringEncodingUTF16LE:
      factor = 2;
      break;
    case kCFStringEncodingUTF32:
    case kCFStringEncodingUTF32BE:
    case kCFStringEncodingUTF32LE:
      factor = 4;
      break;
    case kCFStringEncodingNonLossyASCII:
      factor = 6;
      break;
    default:
      break;
  }
  return length > std::numeric_limits<CFIndex>::max() / factor ? -1 : length * factor;
}
