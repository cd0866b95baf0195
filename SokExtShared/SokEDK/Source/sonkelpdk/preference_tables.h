// The tables of the preference structures: where every field of a structure stands in the host's per-field records.
//
// A per-field record is 12 bytes, six 16-bit words, under the tag 'ot' and two characters. Rows stand in the order in
// which their records travel: a record is loaded, and saved, at the first of its rows.
#pragma once

#include <array>
#include <cstddef>
#include <span>

// How a field stands in its words.
enum PrefConversion : int {
  kPlain = 0,
  kHighWordFirst = 1,  // 32-bit field: word `wordIndex` is the high half, the next one the low half
  kLowWordFirst = 2,   // 32-bit field: the other way round
  kNot = 3,            // the field is 1 where the word is 0, and 0 otherwise
  kLowByte = 4,        // the field is the word's low byte; the word is that byte with its sign
};

// One field of a structure.
struct PrefMapRow {
  short done;                 // scratch flag of the call that runs: this row has been handled
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

// Writable because of the `done` flags, which all callers share: one load or save at a time.
extern std::array<PrefMapRow, 36> EDTDistancePrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 23> EDTSizePrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 49> EDTMiscDocPrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 20> EDTRepeatPrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 11> EDTPianoBracePrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 43> EDTSmartShapePrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 7> EDTPlaybackPrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 25> EDTExtractPrefs_MAP_ARRAY;
extern std::array<PrefMapRow, 22> EDTPageFormatPrefsScore_MAP_ARRAY;
extern std::array<PrefMapRow, 11> EDT2005Prefs_MAP_ARRAY;

// A row in its place among those of its record.
struct PrefRowPlace {
  PrefMapRow* row;
  std::ptrdiff_t of_record;  // how many rows of the record stand from here on
};

// A table and the preference tag that it serves.
struct PreferenceTable {
  unsigned int tag;
  std::span<PrefMapRow> rows;
  std::span<const PrefRowPlace> by_record;  // every row, those of a record together, records by their first row
  int size;                                 // the size that a load reports: the sum of the rows' fields
};

// All ten.
extern const std::array<PreferenceTable, 10> kPreferenceTables;

// The tag of four characters, the first in the highest byte.
constexpr unsigned int FourCharacterTag(const char (&text)[5]) {
  unsigned int tag = 0;
  for (int i = 0; i < 4; ++i) tag = tag << 8 | static_cast<unsigned char>(text[i]);
  return tag;
}
