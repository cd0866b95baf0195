#include "SokExtShared/LIB/strings/eu16string.h"

#include <Carbon/Carbon.h>

#include "SokExtShared/LIB/strings/positions.h"

namespace {

// Makes an empty string the units of 8-bit text before a decoded U+0000; it stays empty when the bytes are not valid in
// the encoding.
void Decode(eu16string& to, const char* text, CFStringEncoding encoding) {
  const CFStringRef decoded = CFStringCreateWithCString(kCFAllocatorDefault, text, encoding);
  if (decoded == nullptr) return;
  const CFIndex length = CFStringGetLength(decoded);
  to.resize(static_cast<std::size_t>(length));
  CFStringGetCharacters(decoded, CFRangeMake(0, length), to.data());
  to.resize(std::min(to.size(), to.find(static_cast<unsigned short>(0))));
  CFRelease(decoded);
}

CFStringRef CreateString(const eu16string& text) {
  return CFStringCreateWithCharacters(kCFAllocatorDefault, text.data(), static_cast<CFIndex>(text.size()));
}

}  // namespace

eu16string::eu16string(const char* text) { Decode(*this, text, GetApplicationTextEncoding()); }

eu16string::eu16string(const unsigned char* utf8) {
  Decode(*this, reinterpret_cast<const char*>(utf8), kCFStringEncodingUTF8);
}

eu16string::eu16string(unsigned int code_point) {
  if (code_point >= 0x10000 && code_point <= 0x10FFFF) {
    push_back(static_cast<unsigned short>(0xD800 + ((code_point - 0x10000) >> 10)));
    push_back(static_cast<unsigned short>(0xDC00 + (code_point & 0x3FF)));
  } else if (const auto unit = static_cast<unsigned short>(code_point)) {
    push_back(unit);
  }
}

eu16string::eu16string(char byte) {
  const char text[] = {byte, 0};
  Decode(*this, text, GetApplicationTextEncoding());
}

void eu16string::GetStdString(std::string& text) const {
  text.clear();
  const CFStringRef source = CreateString(*this);
  if (source == nullptr) return;
  const CFStringEncoding encoding = GetApplicationTextEncoding();
  const CFIndex length = CFStringGetLength(source);
  const CFIndex most = CFStringGetMaximumSizeForEncoding(length, encoding);
  if (most > 0) {
    text.resize(static_cast<std::size_t>(most) + 1);
    CFIndex used = 0;
    CFStringGetBytes(source, CFRangeMake(0, length), encoding, '?', false, reinterpret_cast<UInt8*>(text.data()),
                     most + 1, &used);
    if (used < 0 || used > most) used = most;
    text.resize(std::min(static_cast<std::size_t>(used), text.find('\0')));
  }
  CFRelease(source);
}

int eu16string::AnsiPos(const eu16string& part) const { return positions::Pos(*this, part); }

unsigned short eu16string::AnsiCharAtIndex(int position) const {
  const auto index = static_cast<size_type>(position) - 1;  // beyond the end also for 0 and less
  return index < size() ? (*this)[index] : ' ';
}

unsigned short& eu16string::AnsiCharAtIndex(int position) {
  const auto index = static_cast<size_type>(position) - 1;
  return (*this)[index < size() ? index : 0];
}

eu16string& eu16string::AnsiDelete(unsigned int position, int count) {
  positions::Delete(*this, position, count);
  return *this;
}

eu16string eu16string::AnsiSubString(int position, int count) const {
  eu16string part;
  part.assign(positions::SubString(*this, position, count));
  return part;
}

eu16string& eu16string::AnsiSetLength(unsigned int length) {
  positions::SetLength(*this, length);
  return *this;
}

eu16string IntToEu16Str(long number) { return eu16string(std::to_string(number).c_str()); }

int StrToIntDef(eu16string text, int otherwise) {
  const CFStringRef string = text.empty() ? nullptr : CreateString(text);
  if (string == nullptr) return otherwise;
  const int number = CFStringGetIntValue(string);
  CFRelease(string);
  return number;
}
