#include "SokExtShared/LIB/strings/utf16_strings.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

// Nothing may be read behind a terminator, so every unit is asked for zero before the next one is read. What can be
// saved is the turn of the loop, and work on units that are already known to be inside.

namespace {

// How many units stand before the terminator, at most 8.
inline unsigned EndWithin8(const unsigned short* text) {
  if (text[0] == 0) return 0;
  if (text[1] == 0) return 1;
  if (text[2] == 0) return 2;
  if (text[3] == 0) return 3;
  if (text[4] == 0) return 4;
  if (text[5] == 0) return 5;
  if (text[6] == 0) return 6;
  if (text[7] == 0) return 7;
  return 8;
}

// Whether one of four units is the one that `pattern` holds four times.
inline bool Holds(const unsigned short* four, std::uint64_t pattern) {
  std::uint64_t units;
  std::memcpy(&units, four, sizeof units);
  units ^= pattern;
  return ((units - 0x0001000100010001u) & ~units & 0x8000800080008000u) != 0;
}

// Whether two strings go on alike behind these units.
inline bool GoesOn(unsigned short left, unsigned short right) { return left == right && left != 0; }

// The same for four units in a row.
inline bool GoesOn4(const unsigned short* left, const unsigned short* right) {
  return GoesOn(left[0], right[0]) && GoesOn(left[1], right[1]) && GoesOn(left[2], right[2]) &&
         GoesOn(left[3], right[3]);
}

inline int Order(unsigned short left, unsigned short right) { return (left > right) - (left < right); }

// The number of units before the terminator, at most `limit`.
unsigned long LengthWithin(const unsigned short* text, unsigned long limit) {
  unsigned long length = 0;
  while (length < limit && text[length] != 0) ++length;
  return length;
}

// Whether `text` starts with `part`.
bool StartsWith(const unsigned short* text, const unsigned short* part) {
  while (*part != 0 && *text == *part) {
    ++text;
    ++part;
  }
  return *part == 0;
}

}  // namespace

unsigned long sx_strlen(const unsigned short* text) {
  const unsigned short* at = text;
  for (;;) {
    const unsigned within = EndWithin8(at);
    at += within;
    if (within < 8) return static_cast<unsigned long>(at - text);
  }
}

void sx_strcpy(unsigned short* to, const unsigned short* from) { std::copy_n(from, sx_strlen(from) + 1, to); }

void sx_strcpy(unsigned short* to, unsigned long capacity, const unsigned short* from) {
  if (capacity == 0) return;
  const unsigned long length = LengthWithin(from, capacity - 1);
  std::copy_n(from, length, to);
  to[length] = 0;
}

void sx_strcat(unsigned short* to, unsigned long capacity, const unsigned short* from) {
  if (capacity == 0) return;
  const unsigned long length = LengthWithin(to, capacity - 1);
  sx_strcpy(to + length, capacity - length, from);
}

void sx_strncpy(unsigned short* to, const unsigned short* from, unsigned long count) {
  const unsigned long length = LengthWithin(from, count);
  std::copy_n(from, length, to);
  std::fill_n(to + length, count - length, static_cast<unsigned short>(0));
}

int sx_strcmp(const unsigned short* left, const unsigned short* right) {
  for (; GoesOn4(left, right); left += 4) right += 4;
  for (; GoesOn(*left, *right); ++left) ++right;
  return Order(*left, *right);
}

int sx_strncmp(const unsigned short* left, const unsigned short* right, unsigned long count) {
  for (; count >= 4 && GoesOn4(left, right); left += 4, right += 4) count -= 4;
  for (; count > 0 && GoesOn(*left, *right); ++left, ++right) --count;
  return count == 0 ? 0 : Order(*left, *right);
}

unsigned short* sx_strchr(const unsigned short* text, unsigned short unit) {
  const std::uint64_t pattern = unit * 0x0001000100010001u;
  while (EndWithin8(text) == 8 && !Holds(text, pattern) && !Holds(text + 4, pattern)) text += 8;
  while (*text != unit) {
    if (*text == 0) return nullptr;
    ++text;
  }
  return const_cast<unsigned short*>(text);
}

unsigned short* sx_strstr(const unsigned short* text, const unsigned short* part) {
  if (*part == 0) return const_cast<unsigned short*>(text);
  while ((text = sx_strchr(text, *part)) != nullptr) {
    if (StartsWith(text + 1, part + 1)) return const_cast<unsigned short*>(text);
    ++text;
  }
  return nullptr;
}
