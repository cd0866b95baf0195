// Text decoding and encoding: what decodes encodes back to the same bytes, and buffers of any size are kept to.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

void CheckEncoding(CFStringRef string, CFStringEncoding encoding, CFIndex capacity) {
  const auto buffer = std::make_unique<UInt8[]>(static_cast<std::size_t>(capacity));
  const CFRange all = CFRangeMake(0, CFStringGetLength(string));
  CFIndex used = 0;
  const CFIndex converted = CFStringGetBytes(string, all, encoding, '?', false, buffer.get(), capacity, &used);
  if (converted < 0 || converted > all.length || used < 0) std::abort();
  if (used > capacity && capacity != 0) std::abort();  // without room UTF-8 counts what it would take
  CFStringGetPascalString(string, buffer.get(), capacity, encoding);
  CFStringGetIntValue(string);
}

// Every byte of Mac Roman is a character, and UTF-8 has one spelling for each; a mark in front is dropped.
void CheckRoundTrip(CFStringRef string, CFStringEncoding encoding, const std::string& bytes) {
  if (encoding == kCFStringEncodingASCII || bytes.starts_with("\xEF\xBB\xBF")) return;
  std::string back(bytes.size(), '\0');
  CFIndex used = 0;
  CFStringGetBytes(string, CFRangeMake(0, CFStringGetLength(string)), encoding, 0, false,
                   reinterpret_cast<UInt8*>(back.data()), static_cast<CFIndex>(back.size()), &used);
  if (back != bytes || static_cast<std::size_t>(used) != bytes.size()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const CFStringEncoding encodings[] = {kCFStringEncodingMacRoman, kCFStringEncodingUTF8, kCFStringEncodingASCII};
  const CFStringEncoding encoding = encodings[data[0] % 3];
  const CFIndex capacity = data[1];
  const std::string bytes(reinterpret_cast<const char*>(data + 2), size - 2);
  const std::string text = bytes.c_str();  // up to the first zero
  const CFStringRef decoded = CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), encoding);
  if (decoded != nullptr) {
    CheckRoundTrip(decoded, encoding, text);
    for (const CFStringEncoding target : encodings) CheckEncoding(decoded, target, capacity);
    CFRelease(decoded);
  }
  const auto units = std::make_unique<UniChar[]>(bytes.size() / 2 + 1);
  std::memcpy(units.get(), bytes.data(), bytes.size() / 2 * 2);
  const CFStringRef wide =
      CFStringCreateWithCharacters(kCFAllocatorDefault, units.get(), static_cast<CFIndex>(bytes.size() / 2));
  for (const CFStringEncoding target : encodings) CheckEncoding(wide, target, capacity);
  CFRelease(wide);
  return 0;
}
