// The Mac Roman character set.
#pragma once

#include <string_view>

namespace sok {

constexpr int kNoByte = -1;

// The units of so many bytes.
void MacRomanUnits(std::string_view bytes, char16_t* units);
// The byte for a unit, or kNoByte.
int MacRomanByte(char16_t unit);
// The byte for a letter with the combining mark that follows it, or kNoByte.
int MacRomanComposedByte(char16_t letter, char16_t mark);

// Whether a unit is a mark that belongs to the character before it.
bool IsCombiningMark(char16_t unit);

}  // namespace sok
