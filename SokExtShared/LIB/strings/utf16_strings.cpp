#include "SokExtShared/LIB/strings/utf16_strings.h"

#include <algorithm>

// Units are looked at one after the other, four to a turn of the loop: nothing may be read behind a terminator, so
// wider reads are out, and the turn itself is what costs.

namespace {

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

int Order(unsigned short left, unsigned short right) { return (left > right) - (left < right); }

}  // namespace

unsigned long sx_strlen(const unsigned short* text) {
  for (unsigned long i = 0;; i += 4) {
    if (text[i] == 0) return i;
    if (text[i + 1] == 0) return i + 1;
    if (text[i + 2] == 0) return i + 2;
    if (text[i + 3] == 0) return i + 3;
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
  unsigned long i = 0;
  while (left[i] != 0 && left[i] == right[i]) ++i;
  return Order(left[i], right[i]);
}

int sx_strncmp(const unsigned short* left, const unsigned short* right, unsigned long count) {
  for (unsigned long i = 0; i < count; ++i) {
    if (left[i] != right[i] || left[i] == 0) return Order(left[i], right[i]);
  }
  return 0;
}

unsigned short* sx_strchr(const unsigned short* text, unsigned short unit) {
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
