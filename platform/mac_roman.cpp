#include "platform/mac_roman.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

#include "platform/eight_bytes.h"

namespace sok {
namespace {

constexpr char16_t kUpperHalf[128] = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5,
    0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, 0x00F2, 0x00F4,
    0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6,
    0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, 0x221E, 0x00B1, 0x2264, 0x2265,
    0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF,
    0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, 0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5,
    0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044,
    0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1,
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9,
    0x0131, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7,
};

// Both halves by byte.
constexpr auto kUnits = [] {
  std::array<char16_t, 256> table{};
  for (unsigned i = 0; i < 256; ++i) table[i] = i < 128 ? static_cast<char16_t>(i) : kUpperHalf[i - 128];
  return table;
}();

struct UnitByte {
  char16_t unit;
  unsigned char byte;
};

// The upper half by unit. The ohm sign shares the byte of the letter omega.
constexpr auto kBytes = [] {
  std::array<UnitByte, 129> table{};
  for (unsigned i = 0; i < 128; ++i) table[i] = {kUpperHalf[i], static_cast<unsigned char>(0x80 + i)};
  table[128] = {0x2126, 0xBD};
  std::sort(table.begin(), table.end(), [](UnitByte left, UnitByte right) { return left.unit < right.unit; });
  return table;
}();

struct Composition {
  char16_t mark;
  std::u16string_view letters;
  std::u16string_view composed;
};

constexpr Composition kCompositions[] = {
    {0x0300, u"AEIOUaeiou", u"ÀÈÌÒÙàèìòù"},
    {0x0301, u"AEIOUaeiou", u"ÁÉÍÓÚáéíóú"},
    {0x0302, u"AEIOUaeiou", u"ÂÊÎÔÛâêîôû"},
    {0x0303, u"ANOano", u"ÃÑÕãñõ"},
    {0x0308, u"AEIOUYaeiouy", u"ÄËÏÖÜŸäëïöüÿ"},
    {0x030A, u"Aa", u"Åå"},
    {0x0327, u"Cc", u"Çç"},
    {0x0338, u"=", u"≠"},
};

struct Block {
  char16_t first;
  char16_t last;
};

constexpr Block kMarks[] = {
    {0x0300, 0x036F},  // general
    {0x0483, 0x0489},  // Cyrillic
    {0x1AB0, 0x1AFF},  // general, extended
    {0x1DC0, 0x1DFF},  // general, supplement
    {0x20D0, 0x20FF},  // for symbols
    {0x3099, 0x309A},  // kana voicing
    {0xFE20, 0xFE2F},  // half marks
};

}  // namespace

void MacRomanUnits(std::string_view bytes, char16_t* units) {
  const auto unit = [bytes](std::size_t at) { return kUnits[static_cast<unsigned char>(bytes[at])]; };
  const std::size_t rest = bytes.size() % 8;
  for (std::size_t at = 0; at < rest; ++at) units[at] = unit(at);
  for (std::size_t start = rest; start < bytes.size(); start += 8) {
    if (AsciiOfEight(bytes.data() + start) == 8) {
      WidenEight(bytes.data() + start, units + start);
    } else {
      for (std::size_t at = start; at < start + 8; ++at) units[at] = unit(at);
    }
  }
}

int MacRomanByte(char16_t unit) {
  if (unit < 0x80) return unit;
  const auto found = std::lower_bound(kBytes.begin(), kBytes.end(), unit,
                                      [](UnitByte entry, char16_t wanted) { return entry.unit < wanted; });
  return found != kBytes.end() && found->unit == unit ? found->byte : kNoByte;
}

int MacRomanComposedByte(char16_t letter, char16_t mark) {
  for (const Composition& row : kCompositions) {
    if (row.mark != mark) continue;
    const auto at = row.letters.find(letter);
    return at != row.letters.npos ? MacRomanByte(row.composed[at]) : kNoByte;
  }
  return kNoByte;
}

bool IsCombiningMark(char16_t unit) {
  return std::any_of(std::begin(kMarks), std::end(kMarks),
                     [unit](Block block) { return unit >= block.first && unit <= block.last; });
}

}  // namespace sok
