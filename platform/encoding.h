// Text encodings: bytes to UTF-16 and back.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <string_view>

namespace sok {

// Writes the units and answers how many; nothing when the bytes are invalid or the encoding is unknown. There must be
// room for as many units as bytes, the most that any encoding yields. One byte order mark in front is dropped.
std::optional<std::size_t> Decode(std::string_view bytes, CFStringEncoding encoding, char16_t* units);
std::optional<std::u16string> Decode(std::string_view bytes, CFStringEncoding encoding);

// As UTF-8, unpaired surrogates left out.
std::string ToUtf8(std::u16string_view units);

// Appends one or two units. False, nothing appended, for a number that is no code point.
bool AppendCodePoint(std::u16string& units, char32_t code_point);

struct Encoded {
  std::size_t units = 0;  // converted
  std::size_t bytes = 0;  // used
};

// Encodes from the front as much as fits into `capacity` bytes; a null buffer counts, and no capacity limits it.
// Without a loss byte it stops before the first character that the encoding lacks; of a letter and a mark that have no
// byte together, the letter's byte may then stand behind the bytes used.
Encoded Encode(std::u16string_view units, CFStringEncoding encoding, UInt8 loss_byte, bool with_mark, UInt8* buffer,
               std::size_t capacity);

// Whether ASCII text has the same bytes in the encoding.
bool HoldsAscii(CFStringEncoding encoding);

}  // namespace sok
