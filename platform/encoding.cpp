#include "platform/encoding.h"

#include <bit>
#include <limits>

#include "platform/eight_bytes.h"
#include "platform/mac_roman.h"

namespace sok {
namespace {

constexpr CFStringEncoding kNativeUtf16 =
    std::endian::native == std::endian::little ? kCFStringEncodingUTF16LE : kCFStringEncodingUTF16BE;

constexpr bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
constexpr bool IsSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

// Writes one or two units and answers how many: none for a number that is no code point.
std::size_t PutCodePoint(char16_t* units, char32_t code_point) {
  if (code_point > 0x10FFFF || IsSurrogate(code_point)) return 0;
  if (code_point < 0x10000) {
    units[0] = static_cast<char16_t>(code_point);
    return 1;
  }
  units[0] = static_cast<char16_t>(0xD7C0 + (code_point >> 10));
  units[1] = static_cast<char16_t>(0xDC00 + (code_point & 0x3FF));
  return 2;
}

unsigned char ByteAt(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

// Decodes the character of several bytes that begins at `at`. Answers how many bytes it has, 0 when they are no UTF-8.
std::size_t DecodeSequence(std::string_view bytes, std::size_t at, char32_t& code_point) {
  const unsigned char lead = ByteAt(bytes, at);
  if (lead < 0xC2 || lead > 0xF4) return 0;
  const std::size_t more = lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
  if (bytes.size() - at <= more) return 0;
  code_point = lead & (0x3Fu >> more);
  for (std::size_t i = 1; i <= more; ++i) {
    if ((ByteAt(bytes, at + i) & 0xC0) != 0x80) return 0;
    code_point = code_point << 6 | (ByteAt(bytes, at + i) & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  return code_point < kSmallest[more] ? 0 : more + 1;
}

std::optional<std::size_t> DecodeUtf8(std::string_view bytes, char16_t* units) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  char16_t* to = units;
  for (std::size_t at = 0;;) {
    while (bytes.size() - at >= 8) {
      WidenEight(bytes.data() + at, to);  // there is room for all: no character takes more units than bytes
      const std::size_t ascii = AsciiOfEight(bytes.data() + at);
      at += ascii;
      to += ascii;
      if (ascii < 8) break;
    }
    while (at < bytes.size() && ByteAt(bytes, at) < 0x80) *to++ = ByteAt(bytes, at++);
    if (at == bytes.size()) return static_cast<std::size_t>(to - units);
    char32_t code_point = 0;
    const std::size_t length = DecodeSequence(bytes, at, code_point);
    const std::size_t count = length != 0 ? PutCodePoint(to, code_point) : 0;
    if (count == 0) return std::nullopt;
    at += length;
    to += count;
  }
}

char32_t ReadWord(std::string_view bytes, std::size_t at, std::size_t width, bool big_endian) {
  char32_t word = 0;
  for (std::size_t i = 0; i < width; ++i) word = word << 8 | ByteAt(bytes, at + (big_endian ? i : width - 1 - i));
  return word;
}

std::size_t DecodeUtf16(std::string_view bytes, CFStringEncoding encoding, char16_t* units) {
  if (encoding == kCFStringEncodingUTF16) {
    encoding = bytes.starts_with("\xFE\xFF")   ? kCFStringEncodingUTF16BE
               : bytes.starts_with("\xFF\xFE") ? kCFStringEncodingUTF16LE
                                               : kNativeUtf16;
  }
  const bool big_endian = encoding == kCFStringEncodingUTF16BE;
  char16_t* to = units;
  for (std::size_t at = 0; at + 2 <= bytes.size(); at += 2) {
    const char32_t unit = ReadWord(bytes, at, 2, big_endian);
    if (at > 0 || unit != 0xFEFF) *to++ = static_cast<char16_t>(unit);
  }
  return static_cast<std::size_t>(to - units);
}

std::optional<std::size_t> DecodeUtf32(std::string_view bytes, bool big_endian, char16_t* units) {
  if (bytes.size() % 4 != 0) return std::nullopt;
  char16_t* to = units;
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    const char32_t code_point = ReadWord(bytes, at, 4, big_endian);
    if (at == 0 && code_point == 0xFEFF) continue;
    const std::size_t count = PutCodePoint(to, code_point);
    if (count == 0) return std::nullopt;
    to += count;
  }
  return static_cast<std::size_t>(to - units);
}

// Where encoded bytes go: into a buffer of limited size, or nowhere.
class Output {
 public:
  Output(UInt8* buffer, std::size_t capacity)
      : buffer_(buffer), room_(buffer != nullptr ? capacity : std::numeric_limits<std::size_t>::max()) {}

  bool HasRoom(std::size_t count) const { return room_ - used_ >= count; }
  void Put(char32_t byte) {
    PutUncounted(byte);
    ++used_;
  }
  // Writes a byte without counting it.
  void PutUncounted(char32_t byte) {
    if (buffer_ != nullptr) buffer_[used_] = static_cast<UInt8>(byte);
  }
  std::size_t used() const { return used_; }

 private:
  UInt8* const buffer_;
  const std::size_t room_;
  std::size_t used_ = 0;
};

Encoded EncodeAscii(std::u16string_view units, UInt8 loss_byte, Output output) {
  std::size_t done = 0;
  for (; done < units.size() && output.HasRoom(1); ++done) {
    if (units[done] >= 0x80 && loss_byte == 0) break;
    output.Put(units[done] < 0x80 ? units[done] : loss_byte);
  }
  return {done, output.used()};
}

Encoded EncodeMacRoman(std::u16string_view units, UInt8 loss_byte, Output output) {
  std::size_t done = 0;
  while (done < units.size() && output.HasRoom(1)) {
    int byte = MacRomanByte(units[done]);
    std::size_t length = 1;
    if (byte != kNoByte && done + 1 < units.size() && IsCombiningMark(units[done + 1])) {
      output.PutUncounted(static_cast<char32_t>(byte));
      byte = MacRomanComposedByte(units[done], units[done + 1]);
      length = 2;
    }
    if (byte == kNoByte && loss_byte == 0) break;
    output.Put(byte != kNoByte ? static_cast<char32_t>(byte) : loss_byte);
    done += length;
  }
  return {done, output.used()};
}

// The code point at `at` and how many units it takes: none, for an unpaired surrogate.
std::size_t CodePointAt(std::u16string_view units, std::size_t at, char32_t& code_point) {
  code_point = units[at];
  if (!IsSurrogate(code_point)) return 1;
  if (!IsHighSurrogate(code_point) || at + 1 == units.size() || !IsLowSurrogate(units[at + 1])) return 0;
  code_point = (code_point << 10) + units[at + 1] - 0x35FDC00;
  return 2;
}

// An unpaired surrogate ends the conversion: no loss byte stands for it here.
Encoded EncodeUtf8(std::u16string_view units, Output output) {
  std::size_t done = 0;
  while (done < units.size()) {
    char32_t code_point = 0;
    const std::size_t length = CodePointAt(units, done, code_point);
    if (length == 0) break;
    const std::size_t more = code_point < 0x80 ? 0 : code_point < 0x800 ? 1 : code_point < 0x10000 ? 2 : 3;
    if (!output.HasRoom(more + 1)) break;
    constexpr char32_t kLead[] = {0x00, 0xC0, 0xE0, 0xF0};
    output.Put(kLead[more] | code_point >> (6 * more));
    for (std::size_t i = more; i-- > 0;) output.Put(0x80 | (code_point >> (6 * i) & 0x3F));
    done += length;
  }
  return {done, output.used()};
}

Encoded EncodeUtf16(std::u16string_view units, CFStringEncoding encoding, bool with_mark, Output output) {
  const bool big_endian = (encoding == kCFStringEncodingUTF16 ? kNativeUtf16 : encoding) == kCFStringEncodingUTF16BE;
  const auto put = [&](char32_t unit) {
    if (!output.HasRoom(2)) return false;
    output.Put(big_endian ? unit >> 8 : unit);
    output.Put(big_endian ? unit : unit >> 8);
    return true;
  };
  if (with_mark && encoding == kCFStringEncodingUTF16 && !put(0xFEFF)) return {};
  std::size_t done = 0;
  while (done < units.size() && put(units[done])) ++done;
  return {done, output.used()};
}

}  // namespace

bool AppendCodePoint(std::u16string& units, char32_t code_point) {
  char16_t pair[2];
  const std::size_t count = PutCodePoint(pair, code_point);
  units.append(pair, count);
  return count != 0;
}

std::optional<std::size_t> Decode(std::string_view bytes, CFStringEncoding encoding, char16_t* units) {
  switch (encoding) {
    case kCFStringEncodingMacRoman:
      MacRomanUnits(bytes, units);
      return bytes.size();
    case kCFStringEncodingASCII:
      for (std::size_t i = 0; i < bytes.size(); ++i) units[i] = ByteAt(bytes, i);
      return bytes.size();
    case kCFStringEncodingUTF8:
      return DecodeUtf8(bytes, units);
    case kCFStringEncodingUTF16:
    case kCFStringEncodingUTF16BE:
    case kCFStringEncodingUTF16LE:
      return DecodeUtf16(bytes, encoding, units);
    case kCFStringEncodingUTF32BE:
    case kCFStringEncodingUTF32LE:
      return DecodeUtf32(bytes, encoding == kCFStringEncodingUTF32BE, units);
    default:
      return std::nullopt;
  }
}

std::optional<std::u16string> Decode(std::string_view bytes, CFStringEncoding encoding) {
  std::u16string units(bytes.size(), u'\0');
  const std::optional<std::size_t> count = Decode(bytes, encoding, units.data());
  if (!count) return std::nullopt;
  units.resize(*count);
  return units;
}

Encoded Encode(std::u16string_view units, CFStringEncoding encoding, UInt8 loss_byte, bool with_mark, UInt8* buffer,
               std::size_t capacity) {
  const Output output(buffer, capacity);
  switch (encoding) {
    case kCFStringEncodingMacRoman:
      return EncodeMacRoman(units, loss_byte, output);
    case kCFStringEncodingASCII:
      return EncodeAscii(units, loss_byte, output);
    case kCFStringEncodingUTF8:
      return EncodeUtf8(units, output);
    case kCFStringEncodingUTF16:
    case kCFStringEncodingUTF16BE:
    case kCFStringEncodingUTF16LE:
      return EncodeUtf16(units, encoding, with_mark, output);
    default:
      return {};
  }
}

std::string ToUtf8(std::u16string_view units) {
  std::string bytes;
  while (!units.empty()) {
    const Encoded size = Encode(units, kCFStringEncodingUTF8, 0, false, nullptr, 0);
    const std::size_t start = bytes.size();
    bytes.resize(start + size.bytes);
    Encode(units.substr(0, size.units), kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8*>(bytes.data() + start),
           size.bytes);
    units.remove_prefix(size.units < units.size() ? size.units + 1 : size.units);
  }
  return bytes;
}

bool HoldsAscii(CFStringEncoding encoding) {
  return encoding == kCFStringEncodingMacRoman || encoding == kCFStringEncodingASCII ||
         encoding == kCFStringEncodingUTF8;
}

}  // namespace sok
