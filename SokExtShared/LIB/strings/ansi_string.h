/// @file
/// AnsiString: an 8-bit string with positions that count from 1.
///
/// Bytes have no encoding, and any byte may occur. Position 1 is the first byte, position Length() the last. Positions
/// out of range are repaired, cut or ignored, as each function says.
#pragma once

#include <compare>
#include <string>

namespace _AStrings {

/// The ring of buffers behind c_str(), and the index of the one used last. Unguarded: for one thread.
///@{
extern char c_str_buf_rot[10][2048];
extern int c_str_buf_num;
///@}

/// An 8-bit string.
class AnsiString {
 public:
  AnsiString() = default;
  /// The bytes up to the terminating zero (the second form takes no Pascal strings: see p2ansi).
  ///@{
  AnsiString(const char* text) : text_(text) {}
  AnsiString(const unsigned char* text) : text_(reinterpret_cast<const char*>(text)) {}
  ///@}
  /// One byte, also for the byte 0.
  AnsiString(char byte) : text_(1, byte) {}
  /// The number in decimal.
  ///@{
  AnsiString(short number) : text_(std::to_string(number)) {}
  AnsiString(unsigned short number) : text_(std::to_string(number)) {}
  AnsiString(int number) : text_(std::to_string(number)) {}
  AnsiString(unsigned int number) : text_(std::to_string(number)) {}
  AnsiString(long number) : text_(std::to_string(number)) {}
  AnsiString(unsigned long number) : text_(std::to_string(number)) {}
  ///@}

  /// Append.
  ///@{
  AnsiString& operator+=(const AnsiString& tail);
  AnsiString operator+(const AnsiString& tail) const;
  ///@}

  /// Order by bytes as unsigned numbers; a proper prefix is smaller.
  ///@{
  bool operator==(const AnsiString&) const = default;
  std::strong_ordering operator<=>(const AnsiString&) const = default;
  ///@}

  /// memcmp's result over the common length, else -1, 0 or 1 by length. The first compares the UpperCase() forms; the
  /// second compares the bytes as they are, whatever its name suggests.
  ///@{
  int AnsiCompare(const AnsiString& other) const;
  int AnsiCompareIC(const AnsiString& other) const;
  ///@}

  /// In bytes.
  ///@{
  int Length() const { return static_cast<int>(text_.size()); }
  bool IsEmpty() const { return text_.empty(); }
  ///@}

  /// Position of the first occurrence, 0 when absent. The empty text is at 1, except in an empty string.
  int Pos(const AnsiString& part) const;

  /// The byte at a position, after ThrowIfOutOfRange.
  char& operator[](int position);

  /// Sets a position out of range to 1, and an empty string to one space, so that position 1 exists. Throws nothing.
  void ThrowIfOutOfRange(int& position);

  /// A copy of at most 2047 bytes and a zero, in the next buffer of the ring: valid until ten calls later, by any
  /// string.
  const char* c_str() const;

  /// Inserts before a position; one below 1 counts as 1. Beyond Length() + 1: std::out_of_range.
  AnsiString& Insert(const AnsiString& part, int position);

  /// Removes up to `count` bytes from a position. Nothing happens when position or count is below 1 or the position
  /// lies beyond the end.
  AnsiString& Delete(unsigned int position, int count);

  /// Shortens; never lengthens.
  AnsiString& SetLength(unsigned int length);

  /// A copy with every byte passed through UpperByte (narrow_strings.h).
  AnsiString UpperCase() const;

  /// Copies without the spaces (byte 32 alone) at both ends, in front, or behind.
  ///@{
  AnsiString Trim() const;
  AnsiString TrimLeft() const;
  AnsiString TrimRight() const;
  ///@}

  /// Up to `count` bytes from a position; one below 1 counts as 1. Empty when the count is below 1 or the position lies
  /// beyond the end.
  AnsiString SubString(int position, int count) const;

 private:
  std::string text_;

  friend int StrToIntDef(AnsiString text, int otherwise);
};
static_assert(sizeof(AnsiString) == sizeof(std::string), "AnsiString holds its text alone");

/// Puts 8-bit text in front.
AnsiString operator+(const char* head, const AnsiString& tail);

/// The decimal number that the text starts with, after white space and with a sign, read as a long and cut to 32 bits;
/// `otherwise` when there is none.
int StrToIntDef(AnsiString text, int otherwise);

/// The number in decimal, cut to 18 characters.
AnsiString IntToStr(long number);

/// The text of a Pascal string (a length byte, then the text), up to a zero byte inside.
AnsiString p2ansi(const unsigned char* counted);

}  // namespace _AStrings

using _AStrings::AnsiString;
using _AStrings::p2ansi;
