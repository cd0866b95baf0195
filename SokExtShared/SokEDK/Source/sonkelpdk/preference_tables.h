// The tables of the preference structures: where every field of a structure stands in the host's per-field records.
//
// A per-field record is 12 bytes, six 16-bit words, under the tag 'ot' and two characters. Rows stand in the order in
// which their records travel: a record is loaded, and saved, at the first of its rows. The code that loads and saves a
// structure is made from its table at compile time (preference_mapping.cpp). For the kit's own sources.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

// How a field stands in its words.
enum class PrefConversion : int {
  kPlain = 0,
  kHighWordFirst = 1,  // 32-bit field: word `wordIndex` is the high half, the next one the low half
  kLowWordFirst = 2,   // 32-bit field: the other way round
  kNot = 3,            // the field is 1 where the word is 0, and 0 otherwise
  kLowByte = 4,        // the field is the word's low byte; the word is that byte with its sign
};

// One field of a structure.
struct PrefMapRow {
  char recordChars[2];        // what follows 'ot' in the record's tag
  unsigned short cmper;       // the record's key; 0 stands for 65534
  short subIndex;             // of the record's key
  short fieldOffset;          // in bytes, in the caller's structure
  short wordIndex;            // 0 to 5; the first of two for a 32-bit field
  short fieldSize;            // 2 or 4 bytes
  PrefConversion conversion;  // from words to field and back

  // Whether both fields stand in one record.
  constexpr bool SameRecord(const PrefMapRow& other) const {
    return recordChars[0] == other.recordChars[0] && recordChars[1] == other.recordChars[1] && cmper == other.cmper &&
           subIndex == other.subIndex;
  }
};

namespace preference_rows {

struct Key {
  unsigned short cmper = 0;
  short subIndex = 0;
};

constexpr PrefMapRow Row(int offset, const char (&record)[3], int word, Key key, int size, PrefConversion conversion) {
  return {.recordChars = {record[0], record[1]},
          .cmper = key.cmper,
          .subIndex = key.subIndex,
          .fieldOffset = static_cast<short>(offset),
          .wordIndex = static_cast<short>(word),
          .fieldSize = static_cast<short>(size),
          .conversion = conversion};
}

// The rows' forms: a 16-bit field, a 32-bit field over two words, a byte, a negated flag.
constexpr PrefMapRow Word(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 2, PrefConversion::kPlain);
}
constexpr PrefMapRow Long(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 4, PrefConversion::kHighWordFirst);
}
constexpr PrefMapRow Byte(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 2, PrefConversion::kLowByte);
}
constexpr PrefMapRow Not(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 2, PrefConversion::kNot);
}

// The rows below: offset in the structure, record, word, and the key (cmper, subIndex) where it is not the usual one.
// clang-format off

inline constexpr std::array EDTDistancePrefs_MAP_ARRAY = {
    Word(  0, "21", 3),
    Word(  2, "21", 5),
    Word(  4, "59", 3),
    Word(  6, "59", 4),
    Word(  8, "22", 1),
    Word( 10, "22", 2),
    Word( 12, "22", 3),
    Word( 14, "67", 3),
    Word( 16, "67", 4),
    Long( 18, "68", 4),
    Word( 22, "20", 1),
    Word( 24, "20", 2),
    Word( 26, "13", 3),
    Word( 28, "19", 0),
    Word( 30, "19", 1),
    Word( 32, "68", 0),
    Word( 34, "21", 1),
    Word( 36, "68", 1),
    Word( 38, "21", 0),
    Word( 40, "27", 5),
    Word( 42, "18", 0),
    Word( 44, "18", 2),
    Word( 46, "18", 1),
    Word( 48, "21", 4),
    Word( 50, "39", 0),
    Word( 52, "39", 1),
    Long( 54, "65", 0),
    Word( 58, "67", 1),
    Word( 60, "18", 5),
    Word( 62, "67", 0),
    Word( 64, "18", 3),
    Word( 66, "18", 4),
    Word( 68, "14", 4),
    Word( 70, "14", 5),
    Word( 74, "01", 5),
    Word( 72, "77", 0, {0, 4}),
};

inline constexpr std::array EDTSizePrefs_MAP_ARRAY = {
    Word(  0, "67", 2),
    Word(  2, "58", 4),
    Long(  4, "68", 2),
    Long(  8, "62", 4),
    Word( 12, "03", 3),
    Word( 14, "23", 0),
    Word( 16, "14", 2),
    Word( 18, "64", 1),
    Word( 20, "27", 3),
    Word( 22, "58", 5),
    Word( 24, "59", 0),
    Word( 26, "59", 1),
    Word( 28, "01", 2),
    Word( 30, "59", 2),
    Word( 32, "01", 3),
    Long( 34, "97", 0),
    Word( 38, "20", 4),
    Word( 40, "20", 5),
    Word( 42, "03", 2),
    Word( 44, "21", 2),
    Word( 46, "64", 5),
    Long( 48, "97", 2),
    Word( 52, "69", 0),
};

inline constexpr std::array EDTMiscDocPrefs_MAP_ARRAY = {
    Word(  0, "36", 4),
    Word(  2, "03", 4),
    Word(  4, "03", 5),
    Word(  6, "09", 5),
    Word(  8, "36", 2),
    Word( 10, "36", 3),
    Not(  12, "36", 1),
    Word( 14, "41", 0),
    Word( 16, "41", 1),
    Word( 18, "20", 0),
    Word( 20, "27", 1),
    Word( 22, "01", 0),
    Word( 24, "13", 2),
    Word( 26, "15", 4),
    Word( 28, "27", 0),
    Word( 30, "27", 4),
    Word( 32, "44", 4),
    Word( 34, "27", 2),
    Word( 36, "12", 2),
    Word( 38, "12", 3),
    Word( 40, "12", 1),
    Word( 42, "41", 1, {0, 2}),
    Word( 44, "23", 1),
    Word( 46, "19", 2),
    Word( 48, "19", 3),
    Word( 50, "31", 5),
    Byte( 52, "19", 4),
    Byte( 54, "19", 5),
    Word( 56, "44", 3),
    Word( 58, "05", 4),
    Word( 60, "05", 5),
    Word( 62, "13", 0),
    Word( 64, "41", 5),
    Word( 66, "12", 4),
    Word( 68, "01", 1),
    Word( 70, "93", 4),
    Word( 72, "76", 4),
    Word( 74, "93", 2),
    Word( 76, "76", 3),
    Word( 78, "17", 5),
    Word( 80, "23", 4),
    Word( 82, "16", 5),
    Long( 84, "62", 0),
    Long( 88, "62", 2),
    Word( 92, "41", 0, {0, 2}),
    Word( 94, "41", 2),
    Long( 96, "41", 3, {0, 1}),
    Word(100, "76", 5),
    Word(102, "FI", 2, {10, 0}),
};

inline constexpr std::array EDTRepeatPrefs_MAP_ARRAY = {
    Word(  0, "70", 0),
    Word(  2, "70", 1),
    Word(  4, "70", 2),
    Word(  6, "70", 3),
    Word(  8, "70", 4),
    Word( 10, "70", 5),
    Word( 12, "71", 0),
    Word( 14, "71", 1),
    Word( 16, "71", 2),
    Word( 18, "71", 3),
    Word( 20, "71", 4),
    Word( 22, "71", 5),
    Word( 24, "05", 3),
    Word( 26, "72", 0),
    Word( 28, "76", 2),
    Word( 30, "72", 1),
    Word( 32, "72", 2),
    Word( 34, "72", 3),
    Word( 36, "72", 4),
    Word( 38, "72", 5),
};

inline constexpr std::array EDTPianoBracePrefs_MAP_ARRAY = {
    Long(  0, "65", 2),
    Long(  4, "60", 2),
    Long(  8, "65", 4),
    Long( 12, "60", 4),
    Long( 16, "61", 0),
    Long( 20, "61", 2),
    Long( 24, "61", 4),
    Long( 28, "60", 0),
    Long( 32, "64", 2),
    Long( 36, "45", 2),
    Long( 40, "45", 4),
};

// The two bytes behind each byte field at 28 to 48 belong to no field.
inline constexpr std::array EDTSmartShapePrefs_MAP_ARRAY = {
    Word(  0, "92", 0),
    Word(  2, "92", 1),
    Word(  4, "92", 2),
    Word(  6, "92", 3),
    Word(  8, "FI", 0, {11, 0}),
    Word( 10, "FI", 1, {11, 0}),
    Word( 12, "FI", 4, {12, 0}),
    Word( 14, "FI", 4, {11, 0}),
    Long( 16, "FI", 0, {12, 0}),
    Long( 20, "FI", 2, {12, 0}),
    Word( 24, "FI", 2, {11, 0}),
    Word( 26, "FI", 5, {11, 0}),
    Byte( 28, "12", 5),
    Byte( 32, "11", 5),
    Byte( 36, "69", 4),
    Byte( 40, "69", 5),
    Byte( 44, "69", 2),
    Byte( 48, "69", 3),
    Word( 52, "51", 5),
    Word( 54, "53", 5),
    Word( 56, "51", 4),
    Word( 58, "53", 4),
    Word( 60, "50", 4),
    Word( 62, "53", 0, {0, 1}),
    Word( 64, "53", 1, {0, 1}),
    Word( 66, "53", 2, {0, 1}),
    Word( 68, "53", 3, {0, 1}),
    Long( 70, "51", 0),
    Long( 74, "51", 2),
    Word( 78, "53", 2),
    Word( 80, "53", 0),
    Word( 82, "53", 1),
    Long( 84, "93", 0),
    Word( 88, "53", 3),
    Word( 90, "50", 5),
    Word( 92, "50", 0),
    Word( 94, "50", 1),
    Word( 96, "50", 2),
    Word( 98, "50", 3),
    Word(100, "97", 0, {0, 1}),
    Word(102, "97", 1, {0, 1}),
    Word(104, "97", 2, {0, 1}),
    Word(106, "97", 3, {0, 1}),
};

inline constexpr std::array EDTPlaybackPrefs_MAP_ARRAY = {
    Word(  0, "13", 1),
    Word(  2, "39", 3),
    Word(  4, "36", 0),
    Word(  6, "36", 5),
    Word(  8, "37", 0),
    Word( 10, "37", 1),
    Word( 12, "37", 2),
};

inline constexpr std::array EDTExtractPrefs_MAP_ARRAY = {
    Word(  0, "77", 1, {0, 4}),
    Word(  2, "77", 2, {0, 4}),
    Word(  4, "77", 3, {0, 4}),
    Word(  6, "77", 4, {0, 4}),
    Word(  8, "77", 5, {0, 4}),
    Word( 10, "77", 0, {0, 5}),
    Word( 12, "77", 1, {0, 5}),
    Word( 14, "77", 2, {0, 5}),
    Word( 16, "77", 3, {0, 5}),
    Word( 18, "77", 4, {0, 5}),
    Word( 20, "77", 5, {0, 5}),
    Word( 22, "77", 0, {0, 6}),
    Word( 24, "77", 1, {0, 6}),
    Word( 26, "77", 2, {0, 6}),
    Word( 28, "77", 3, {0, 6}),
    Word( 30, "77", 4, {0, 6}),
    Word( 32, "77", 5, {0, 6}),
    Word( 34, "77", 0, {0, 7}),
    Word( 36, "77", 1, {0, 7}),
    Word( 38, "77", 2, {0, 7}),
    Word( 40, "77", 3, {0, 7}),
    Word( 46, "77", 4, {0, 7}),
    Word( 48, "77", 5, {0, 7}),
    Word( 42, "77", 0, {0, 8}),
    Word( 44, "77", 1, {0, 8}),
};

inline constexpr std::array EDTPageFormatPrefsScore_MAP_ARRAY = {
    Long(  0, "14", 0),
    Long(  4, "15", 2),
    Word(  8, "39", 2),
    Word( 10, "16", 0),
    Word( 12, "16", 1),
    Word( 14, "16", 2),
    Word( 16, "16", 3),
    Word( 18, "02", 0),
    Word( 20, "02", 1),
    Word( 22, "02", 2),
    Word( 24, "02", 3),
    Word( 26, "17", 0),
    Word( 28, "17", 1),
    Word( 30, "17", 3),
    Word( 32, "17", 2),
    Word( 34, "01", 4),
    Word( 36, "02", 4),
    Word( 38, "13", 5),
    Word( 40, "13", 4),
    Word( 42, "02", 5),
    Word( 44, "03", 0),
    Word( 46, "03", 1),
};

inline constexpr std::array EDT2005Prefs_MAP_ARRAY = {
    Word(  0, "69", 1),
    Word(  2, "20", 3),
    Word(  4, "39", 5),
    Word(  6, "38", 5),
    Word(  8, "39", 4),
    Word( 10, "23", 5),
    Word( 12, "56", 4),
    Word( 14, "41", 2, {0, 2}),
    Word( 16, "41", 3, {0, 2}),
    Word( 18, "94", 4),
    Word( 20, "94", 2, {0, 2}),
};

// clang-format on

}  // namespace preference_rows

using preference_rows::EDT2005Prefs_MAP_ARRAY;
using preference_rows::EDTDistancePrefs_MAP_ARRAY;
using preference_rows::EDTExtractPrefs_MAP_ARRAY;
using preference_rows::EDTMiscDocPrefs_MAP_ARRAY;
using preference_rows::EDTPageFormatPrefsScore_MAP_ARRAY;
using preference_rows::EDTPianoBracePrefs_MAP_ARRAY;
using preference_rows::EDTPlaybackPrefs_MAP_ARRAY;
using preference_rows::EDTRepeatPrefs_MAP_ARRAY;
using preference_rows::EDTSizePrefs_MAP_ARRAY;
using preference_rows::EDTSmartShapePrefs_MAP_ARRAY;

// What can be counted of a table.
struct PrefTableMeasures {
  std::size_t rows = 0;
  int size = 0;             // bytes of all fields: what a load reports
  int reach = 0;            // where the last field ends
  std::size_t records = 0;  // different records

  bool operator==(const PrefTableMeasures&) const = default;
};

// Whether a row is the first one of its record.
template <std::size_t N>
constexpr bool FirstOfRecord(const std::array<PrefMapRow, N>& rows, std::size_t index) {
  return std::none_of(rows.begin(), rows.begin() + index,
                      [&](const PrefMapRow& row) { return row.SameRecord(rows[index]); });
}

template <std::size_t N>
constexpr PrefTableMeasures MeasuresOf(const std::array<PrefMapRow, N>& rows) {
  PrefTableMeasures measures = {.rows = N};
  for (std::size_t i = 0; i < N; ++i) {
    measures.size += rows[i].fieldSize;
    measures.reach = std::max(measures.reach, rows[i].fieldOffset + rows[i].fieldSize);
    measures.records += FirstOfRecord(rows, i);
  }
  return measures;
}

// Whether every field lies in its record and no two share a byte of the structure or a word of a record.
template <std::size_t N>
constexpr bool Disjoint(const std::array<PrefMapRow, N>& rows) {
  const auto apart = [](int a, int a_size, int b, int b_size) { return a + a_size <= b || b + b_size <= a; };
  for (std::size_t i = 0; i < N; ++i) {
    const PrefMapRow& a = rows[i];
    if (a.fieldOffset < 0 || a.wordIndex < 0 || a.wordIndex + a.fieldSize / 2 > 6) return false;
    for (std::size_t j = 0; j < i; ++j) {
      const PrefMapRow& b = rows[j];
      if (!apart(a.fieldOffset, a.fieldSize, b.fieldOffset, b.fieldSize)) return false;
      if (a.SameRecord(b) && !apart(a.wordIndex, a.fieldSize / 2, b.wordIndex, b.fieldSize / 2)) return false;
    }
  }
  return true;
}
