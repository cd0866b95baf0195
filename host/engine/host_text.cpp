#include "host/engine/host_text.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>

namespace sok {

namespace {

// Releases `string`; null gives an empty text.
std::string TakeBytes(CFStringRef string, CFStringEncoding encoding) {
  if (string == nullptr) return {};
  const CFIndex length = CFStringGetLength(string);
  std::string bytes(static_cast<std::size_t>(CFStringGetMaximumSizeForEncoding(length, encoding)), '\0');
  std::size_t end = 0;
  for (CFIndex at = 0; at < length;) {
    CFIndex used = 0;
    at += CFStringGetBytes(string, {at, length - at}, encoding, '?', false, reinterpret_cast<UInt8*>(&bytes[end]),
                           static_cast<CFIndex>(bytes.size() - end), &used);
    end += static_cast<std::size_t>(used);
    if (at == length) break;
    bytes[end++] = '?';  // UTF-8 stops at an unpaired surrogate
    ++at;
  }
  CFRelease(string);
  bytes.resize(end);
  return bytes;
}

CFStringRef CreateFromBytes(const char* text, CFStringEncoding encoding) {
  return CFStringCreateWithCString(kCFAllocatorDefault, text, encoding);
}

}  // namespace

std::string Utf8FromMacRoman(const char* text) {
  if (text == nullptr) return {};
  return TakeBytes(CreateFromBytes(text, kCFStringEncodingMacRoman), kCFStringEncodingUTF8);
}

std::string Utf8FromUtf16(const unsigned short* text) {
  if (text == nullptr) return {};
  std::size_t length = 0;
  while (text[length] != 0) ++length;
  return Utf8FromUtf16(text, length);
}

std::string Utf8FromUtf16(const unsigned short* units, std::size_t capacity) {
  const auto length = static_cast<CFIndex>(std::find(units, units + capacity, 0) - units);
  return TakeBytes(CFStringCreateWithCharacters(kCFAllocatorDefault, units, length), kCFStringEncodingUTF8);
}

std::string MacRomanFromUtf8(const std::string& text) {
  return TakeBytes(CreateFromBytes(text.c_str(), kCFStringEncodingUTF8), kCFStringEncodingMacRoman);
}

std::u16string Utf16FromUtf8(const std::string& text) {
  const CFStringRef string = CreateFromBytes(text.c_str(), kCFStringEncodingUTF8);
  if (string == nullptr) return {};
  const CFRange all = {0, CFStringGetLength(string)};
  std::u16string units(static_cast<std::size_t>(all.length), u'\0');
  CFStringGetCharacters(string, all, reinterpret_cast<UniChar*>(units.data()));
  CFRelease(string);
  return units;
}

}  // namespace sok
