/// @file
/// eu16string: a UTF-16 string that converts from and to 8-bit text, with the 1-based editing of AnsiString.
///
/// It is a standard string of 16-bit units and has all of that string's functions. What these return, such as substr()
/// and +, is the standard string: name.assign(text.substr(1)) makes an eu16string of it, as assign() does of
/// zero-terminated UTF-16, for which there is no constructor. The functions named here count
/// positions from 1; lengths and positions count units. "8-bit text" is text in the application's encoding
/// (GetApplicationTextEncoding). Conversions go through CoreFoundation strings; what these refuse comes out empty.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <ios>
#include <string>

#include "SokExtShared/LIB/strings/utf16_strings.h"

/// The traits of 16-bit units; the standard has none for unsigned short.
struct eu16traits {
  using char_type = unsigned short;
  using int_type = unsigned int;
  using off_type = std::streamoff;
  using pos_type = std::streampos;
  using state_type = std::mbstate_t;
  using comparison_category = std::strong_ordering;

  static constexpr void assign(char_type& to, const char_type& unit) noexcept { to = unit; }
  static constexpr bool eq(char_type left, char_type right) noexcept { return left == right; }
  static constexpr bool lt(char_type left, char_type right) noexcept { return left < right; }
  static int compare(const char_type* left, const char_type* right, std::size_t count) {
    const auto [l, r] = std::mismatch(left, left + count, right);
    return l == left + count ? 0 : *l < *r ? -1 : 1;
  }
  static std::size_t length(const char_type* text) { return sx_strlen(text); }
  static const char_type* find(const char_type* text, std::size_t count, const char_type& unit) {
    const char_type* const at = std::find(text, text + count, unit);
    return at == text + count ? nullptr : at;
  }
  static char_type* move(char_type* to, const char_type* from, std::size_t count) {
    if (to < from) {
      std::copy_n(from, count, to);
    } else {
      std::copy_backward(from, from + count, to + count);
    }
    return to;
  }
  static char_type* copy(char_type* to, const char_type* from, std::size_t count) {
    std::copy_n(from, count, to);
    return to;
  }
  static char_type* assign(char_type* to, std::size_t count, char_type unit) {
    std::fill_n(to, count, unit);
    return to;
  }
  static constexpr char_type to_char_type(int_type value) noexcept { return static_cast<char_type>(value); }
  static constexpr int_type to_int_type(char_type unit) noexcept { return unit; }
  static constexpr bool eq_int_type(int_type left, int_type right) noexcept { return left == right; }
  static constexpr int_type eof() noexcept { return 0xFFFFFFFF; }
  static constexpr int_type not_eof(int_type value) noexcept { return value == eof() ? 0 : value; }
};

/// A UTF-16 string.
class eu16string : public std::basic_string<unsigned short, eu16traits> {
 public:
  /// Empty, copied, moved.
  ///@{
  eu16string() = default;
  eu16string(const eu16string&) = default;
  eu16string(eu16string&&) = default;
  eu16string& operator=(const eu16string&) = default;
  eu16string& operator=(eu16string&&) = default;
  virtual ~eu16string() = default;
  ///@}

  /// Zero-terminated 8-bit text; the second form takes UTF-8. Bytes that are not valid give the empty string; the text
  /// also ends at a decoded U+0000.
  ///@{
  eu16string(const char* text);
  eu16string(const unsigned char* utf8);
  ///@}

  /// One code point: a surrogate pair from 0x10000 to 0x10FFFF, else its low 16 bits; the empty string when these are
  /// 0. The second form keeps plain literals from being ambiguous.
  ///@{
  eu16string(unsigned int code_point);
  eu16string(int code_point) : eu16string(static_cast<unsigned int>(code_point)) {}
  ///@}

  /// One byte of 8-bit text; the empty string for the byte 0.
  eu16string(char byte);

  /// Replaces `text` by this one as 8-bit text up to the first zero byte. Characters that the encoding lacks become
  /// "?".
  void GetStdString(std::string& text) const;

  /// Position of the first occurrence, 0 when absent. The empty text is at 1, except in an empty string.
  int AnsiPos(const eu16string& part) const;

  /// The unit at a position. Out of range: a space here, the first unit below. In an empty string that is the
  /// terminator, which must not be changed.
  ///@{
  unsigned short AnsiCharAtIndex(int position) const;
  unsigned short& AnsiCharAtIndex(int position);
  ///@}

  /// Removes up to `count` units from a position. Nothing happens when position or count is below 1 or the position
  /// lies beyond the end.
  eu16string& AnsiDelete(unsigned int position, int count);

  /// Up to `count` units from a position; one below 1 counts as 1. Empty when the count is below 1 or the position lies
  /// beyond the end.
  eu16string AnsiSubString(int position, int count) const;

  /// Shortens; never lengthens.
  eu16string& AnsiSetLength(unsigned int length);
};
static_assert(sizeof(eu16string) == sizeof(void*) + sizeof(std::string), "eu16string is a vtable pointer and its text");

/// The number in decimal.
eu16string IntToEu16Str(long number);

/// The number that the text starts with, 0 when it starts with none; `otherwise` for the empty string alone.
int StrToIntDef(eu16string text, int otherwise);
