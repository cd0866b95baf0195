#include "SokExtShared/LIB/strings/narrow_strings.h"

#include <cctype>
#include <cstdio>

int UpperByte(char byte) {
  const int value = static_cast<signed char>(byte);
  return value < 0 ? value : std::toupper(value);
}

int stricmp(const char* left, const char* right) { return strnicmp(left, right, static_cast<unsigned long>(-1)); }

int strnicmp(const char* left, const char* right, unsigned long count) {
  for (unsigned long i = 0; i < count; ++i) {
    const int l = UpperByte(left[i]);
    const int r = UpperByte(right[i]);
    if (l != r) return l < r ? -1 : 1;
    if (left[i] == 0) break;
  }
  return 0;
}

void num2str(int number, char* text) {
  constexpr std::size_t kLongest = sizeof "-2147483648";
  std::snprintf(text, kLongest, "%d", number);
}
