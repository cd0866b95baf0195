#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_tables.h"

#include <algorithm>
#include <cstddef>

namespace {

struct Key {
  unsigned short cmper = 0;
  short subIndex = 0;
};

// The rows' forms: a 16-bit field, a 32-bit field over two words, a byte, a negated flag.
constexpr PrefMapRow Row(int offset, const char (&record)[3], int word, Key key, int size, PrefConversion conversion) {
  return {.done = 0,
          .recordChars = {record[0], record[1]},
          .cmper = key.cmper,
          .subIndex = key.subIndex,
          .fieldOffset = static_cast<short>(offset),
          .wordIndex = static_cast<short>(word),
          .fieldSize = static_cast<short>(size),
          .conversion = conversion};
}
constexpr PrefMapRow Word(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 2, kPlain);
}
constexpr PrefMapRow Long(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 4, kHighWordFirst);
}
constexpr PrefMapRow Byte(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 2, kLowByte);
}
constexpr PrefMapRow Not(int offset, const char (&record)[3], int word, Key key = {}) {
  return Row(offset, record, word, key, 2, kNot);
}

struct Measures {
  std::size_t rows;
  int size;     // sum of the fields
  int reach;    // end of the last field
  int records;  // different records

  bool operator==(const Measures&) const = default;
};

template <std::size_t N>
constexpr Measures Measure(const std::array<PrefMapRow, N>& rows) {
  Measures measures = {.rows = N, .size = 0, .reach = 0, .records = 0};
  for (std::size_t i = 0; i < N; ++i) {
    measures.size += rows[i].fieldSize;
    measures.reach = std::max(measures.reach, rows[i].fieldOffset + rows[i].fieldSize);
    bool first = true;
    for (std::size_t j = 0; j < i; ++j) first = first && !rows[j].SameRecord(rows[i]);
    measures.records += first;
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

// The rows of a table by record. `rows` are the constants that the table was made of.
template <std::size_t N>
constexpr std::array<PrefRowPlace, N> ByRecord(const std::array<PrefMapRow, N>& rows,
                                               std::array<PrefMapRow, N>& table) {
  std::array<PrefRowPlace, N> places{};
  std::size_t filled = 0;
  for (std::size_t first = 0; first < N; ++first) {
    const auto same = [&](const PrefMapRow& row) { return row.SameRecord(rows[first]); };
    if (std::any_of(rows.begin(), rows.begin() + first, same)) continue;
    auto left = std::count_if(rows.begin(), rows.end(), same);
    for (std::size_t i = first; i < N; ++i) {
      if (same(rows[i])) places[filled++] = {&table[i], left--};
    }
  }
  return places;
}

// The rows below: offset in the structure, record, word, and the key (cmper, subIndex) where it is not the usual one.
// clang-format off

constexpr std::array kDistancePrefs = {
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

constexpr std::array kSizePrefs = {
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

constexpr std::array kMiscDocPrefs = {
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

constexpr std::array kRepeatPrefs = {
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

constexpr std::array kPianoBracePrefs = {
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
constexpr std::array kSmartShapePrefs = {
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

constexpr std::array kPlaybackPrefs = {
    Word(  0, "13", 1),
    Word(  2, "39", 3),
    Word(  4, "36", 0),
    Word(  6, "36", 5),
    Word(  8, "37", 0),
    Word( 10, "37", 1),
    Word( 12, "37", 2),
};

constexpr std::array kExtractPrefs = {
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

constexpr std::array kPageFormatPrefsScore = {
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

constexpr std::array k2005Prefs = {
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

static_assert(Measure(kDistancePrefs) == Measures{.rows = 36, .size = 76, .reach = 76, .records = 15});
static_assert(Measure(kSizePrefs) == Measures{.rows = 23, .size = 54, .reach = 54, .records = 15});
static_assert(Measure(kMiscDocPrefs) == Measures{.rows = 49, .size = 104, .reach = 104, .records = 23});
static_assert(Measure(kRepeatPrefs) == Measures{.rows = 20, .size = 40, .reach = 40, .records = 5});
static_assert(Measure(kPianoBracePrefs) == Measures{.rows = 11, .size = 44, .reach = 44, .records = 5});
static_assert(Measure(kSmartShapePrefs) == Measures{.rows = 43, .size = 96, .reach = 108, .records = 12});
static_assert(Measure(kPlaybackPrefs) == Measures{.rows = 7, .size = 14, .reach = 14, .records = 4});
static_assert(Measure(kExtractPrefs) == Measures{.rows = 25, .size = 50, .reach = 50, .records = 5});
static_assert(Measure(kPageFormatPrefsScore) == Measures{.rows = 22, .size = 48, .reach = 48, .records = 9});
static_assert(Measure(k2005Prefs) == Measures{.rows = 11, .size = 22, .reach = 22, .records = 9});

static_assert(Disjoint(kDistancePrefs) && Disjoint(kSizePrefs) && Disjoint(kMiscDocPrefs) && Disjoint(kRepeatPrefs) &&
              Disjoint(kPianoBracePrefs) && Disjoint(kSmartShapePrefs) && Disjoint(kPlaybackPrefs) &&
              Disjoint(kExtractPrefs) && Disjoint(kPageFormatPrefsScore) && Disjoint(k2005Prefs));

}  // namespace

constinit std::array<PrefMapRow, 36> EDTDistancePrefs_MAP_ARRAY = kDistancePrefs;
constinit std::array<PrefMapRow, 23> EDTSizePrefs_MAP_ARRAY = kSizePrefs;
constinit std::array<PrefMapRow, 49> EDTMiscDocPrefs_MAP_ARRAY = kMiscDocPrefs;
constinit std::array<PrefMapRow, 20> EDTRepeatPrefs_MAP_ARRAY = kRepeatPrefs;
constinit std::array<PrefMapRow, 11> EDTPianoBracePrefs_MAP_ARRAY = kPianoBracePrefs;
constinit std::array<PrefMapRow, 43> EDTSmartShapePrefs_MAP_ARRAY = kSmartShapePrefs;
constinit std::array<PrefMapRow, 7> EDTPlaybackPrefs_MAP_ARRAY = kPlaybackPrefs;
constinit std::array<PrefMapRow, 25> EDTExtractPrefs_MAP_ARRAY = kExtractPrefs;
constinit std::array<PrefMapRow, 22> EDTPageFormatPrefsScore_MAP_ARRAY = kPageFormatPrefsScore;
constinit std::array<PrefMapRow, 11> EDT2005Prefs_MAP_ARRAY = k2005Prefs;

namespace {

constinit const auto kDistancePrefsByRecord = ByRecord(kDistancePrefs, EDTDistancePrefs_MAP_ARRAY);
constinit const auto kSizePrefsByRecord = ByRecord(kSizePrefs, EDTSizePrefs_MAP_ARRAY);
constinit const auto kMiscDocPrefsByRecord = ByRecord(kMiscDocPrefs, EDTMiscDocPrefs_MAP_ARRAY);
constinit const auto kRepeatPrefsByRecord = ByRecord(kRepeatPrefs, EDTRepeatPrefs_MAP_ARRAY);
constinit const auto kPianoBracePrefsByRecord = ByRecord(kPianoBracePrefs, EDTPianoBracePrefs_MAP_ARRAY);
constinit const auto kSmartShapePrefsByRecord = ByRecord(kSmartShapePrefs, EDTSmartShapePrefs_MAP_ARRAY);
constinit const auto kPlaybackPrefsByRecord = ByRecord(kPlaybackPrefs, EDTPlaybackPrefs_MAP_ARRAY);
constinit const auto kExtractPrefsByRecord = ByRecord(kExtractPrefs, EDTExtractPrefs_MAP_ARRAY);
constinit const auto kPageFormatPrefsScoreByRecord = ByRecord(kPageFormatPrefsScore, EDTPageFormatPrefsScore_MAP_ARRAY);
constinit const auto k2005PrefsByRecord = ByRecord(k2005Prefs, EDT2005Prefs_MAP_ARRAY);

}  // namespace

constinit const std::array<PreferenceTable, 10> kPreferenceTables = {{
    PreferenceTable{FourCharacterTag("pfDP"), EDTDistancePrefs_MAP_ARRAY, kDistancePrefsByRecord, 76},
    PreferenceTable{FourCharacterTag("pfSI"), EDTSizePrefs_MAP_ARRAY, kSizePrefsByRecord, 54},
    PreferenceTable{FourCharacterTag("pfMS"), EDTMiscDocPrefs_MAP_ARRAY, kMiscDocPrefsByRecord, 104},
    PreferenceTable{FourCharacterTag("pfRP"), EDTRepeatPrefs_MAP_ARRAY, kRepeatPrefsByRecord, 40},
    PreferenceTable{FourCharacterTag("pfPB"), EDTPianoBracePrefs_MAP_ARRAY, kPianoBracePrefsByRecord, 44},
    PreferenceTable{FourCharacterTag("pfSS"), EDTSmartShapePrefs_MAP_ARRAY, kSmartShapePrefsByRecord, 96},
    PreferenceTable{FourCharacterTag("pfPL"), EDTPlaybackPrefs_MAP_ARRAY, kPlaybackPrefsByRecord, 14},
    PreferenceTable{FourCharacterTag("pfEX"), EDTExtractPrefs_MAP_ARRAY, kExtractPrefsByRecord, 50},
    PreferenceTable{FourCharacterTag("pfPF"), EDTPageFormatPrefsScore_MAP_ARRAY, kPageFormatPrefsScoreByRecord, 48},
    PreferenceTable{FourCharacterTag("pf05"), EDT2005Prefs_MAP_ARRAY, k2005PrefsByRecord, 22},
}};
