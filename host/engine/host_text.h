// The host's text forms. UTF-8 inside the workbench; Mac Roman (the host's 8-bit encoding) and UTF-16 in host calls.
#pragma once

#include <cstddef>
#include <string>

namespace sok {

// A null text reads as an empty one. What a target encoding lacks becomes a question mark, in UTF-8 each unpaired
// surrogate.
std::string Utf8FromMacRoman(const char* text);
std::string Utf8FromUtf16(const unsigned short* text);
std::string Utf8FromUtf16(const unsigned short* units, std::size_t capacity);  // to the first zero or the end
std::string MacRomanFromUtf8(const std::string& text);
std::u16string Utf16FromUtf8(const std::string& text);

}  // namespace sok
