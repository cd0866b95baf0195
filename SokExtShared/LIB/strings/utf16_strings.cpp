#include "SokExtShared/LIB/strings/utf16_strings.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "SokExtShared/LIB/strings/unit_blocks.h"

using unit_blocks::AnyOf4Is;
using unit_blocks::EndWithin8;

namespace {

// Whether two strings go on alike behind these units.
inline bool GoesOn(unsigned short left, unsigned short right) { return left == right && left != 0; }

// The same for two units in a row. One product tells of both first units that they are not zero, and the pairs are
// compared whole: this takes fewer branches than units do.
inline bool GoesOn2(const unsigned short* left, const unsigned short* right) {
  if (static_cast<unsigned>(*left) * *right == 0) return false;
  std::uint32_t left_pair, right_pair;
  std::memcpy(&left_pair, left, sizeof left_pair);
  std::memcpy(&right_pair, right, sizeof right_pair);
  return left_pair == right_pair && left[1] != 0;
}

// The same for eight.
inline bool GoesOn8(const unsigned short* left, const unsigned short* right) {
  return GoesOn2(left, right) && GoesOn2(left + 2, right + 2) && GoesOn2(left + 4, right + 4) &&
         GoesOn2(left + 6, right + 6);
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
  while (GoesOn8(left, right)) [[likely]] {
    left += 8;
    right += 8;
  }
  for (; GoesOn(*left, *right); ++left) ++right;
  return Order(*left, *right);
}

int sx_strncmp(const unsigned short* left, const unsigned short* right, unsigned long count) {
  for (; count >= 8 && GoesOn8(left, right); left += 8, right += 8) count -= 8;
  for (; count > 0 && GoesOn(*left, *right); ++left, ++right) --count;
  return count == 0 ? 0 : Order(*left, *right);
}

unsigned short* sx_strchr(const unsigned short* text, unsigned short unit) {
  while (EndWithin8(text) == 8 && !AnyOf4Is(text, unit) && !AnyOf4Is(text + 4, unit)) text += 8;
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
