#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_mapping.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <type_traits>
#include <utility>

#include "SokExtShared/SokEDK/Source/record_keys.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_tables.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

namespace {

struct FieldRecord {
  unsigned short words[6];
};
constexpr int kRecordSize = 12;
static_assert(sizeof(FieldRecord) == kRecordSize);

struct ArrayMapping {
  unsigned int tag;
  unsigned int recordTag;
  short count;
  unsigned short instances;  // accepted from 1 to this, one subIndex each; 0: any, and all the same
};

constexpr ArrayMapping Array(const char (&tag)[5], const char (&record)[5], short count, unsigned short instances = 0) {
  return {FourCharacterTag(tag), FourCharacterTag(record), count, instances};
}

// clang-format off
constexpr ArrayMapping kArrayMappings[] = {
    Array("pfGD", "ot79", 1),
    Array("pfGG", "ot88", 11),
    Array("pfGb", "ot98", 1, 4),
    Array("pfGd", "ot80", 1),
    Array("pfGs", "ot91", 1, 1),
    Array("pfMM", "ot25", 2),
    Array("pfND", "ot04", 1),
    Array("pfNd", "ot66", 1),
    Array("pfPF", "ot77", 4, 1),
    Array("pfSC", "ot52", 2),
    Array("pfSN", "ot40", 1, 128),
    Array("pfSP", "ot94", 3),
    Array("pfSl", "ot26", 1, 15),
    Array("pfTC", "ot86", 5),
    Array("pfTI", "ot84", 4),
    Array("pfTX", "ot78", 9),
    Array("pfTp", "ot85", 4),
    Array("pfTs", "ot90", 1, 9),
};
// clang-format on

// The host's own calls for per-field records. The wrappers would only pass these tags on, at a quarter of the price of
// the host's work.
class Loader {
 public:
  void operator()(unsigned int tag, const EDataID& id, void* record) const {
    std::memset(record, 0, kRecordSize);
    int size = kRecordSize;
    if (load_ != nullptr) load_(tag, &id, record, &size, kInterfaceVersion);
  }

 private:
  decltype(SX_LoadEData)* const load_ = HostLoadEData();
};

class Saver {
 public:
  void operator()(unsigned int tag, const EDataID& id, const void* record) const {
    if (save_ != nullptr) save_(tag, &id, record, kRecordSize, kInterfaceVersion);
  }

 private:
  decltype(SX_SaveEData)* const save_ = HostSaveEData();
};

EDataID RecordKey(unsigned short cmper, short subIndex) {
  return edk::OtherKey{cmper != 0 ? cmper : EDataID::kDocument, subIndex}.Id();
}

// Of a 32-bit field, in the order of its row's conversion: 0 where the conversion is not one of two words.
template <PrefMapRow kRow>
unsigned int LongValue(const FieldRecord& record) {
  const unsigned int first = record.words[kRow.wordIndex];
  const unsigned int second = record.words[kRow.wordIndex + 1];
  if constexpr (kRow.conversion == PrefConversion::kHighWordFirst) return first << 16 | second;
  if constexpr (kRow.conversion == PrefConversion::kLowWordFirst) return second << 16 | first;
  return 0;
}

// The type of a field in the structure, which may stand at any byte.
template <PrefMapRow kRow>
using FieldOf = std::conditional_t<kRow.fieldSize == 4, unsigned int, unsigned short>;

template <PrefMapRow kRow>
FieldOf<kRow> FieldValue(const FieldRecord& record) {
  if constexpr (kRow.fieldSize == 4) return LongValue<kRow>(record);
  const unsigned short word = record.words[kRow.wordIndex];
  if constexpr (kRow.conversion == PrefConversion::kNot) return word == 0;
  if constexpr (kRow.conversion == PrefConversion::kLowByte) return word & 0xFF;
  return word;
}

template <PrefMapRow kRow>
void LoadField(const FieldRecord& record, unsigned char* structure) {
  const FieldOf<kRow> value = FieldValue<kRow>(record);
  std::memcpy(structure + kRow.fieldOffset, &value, sizeof value);
}

// Both put a field's value into its record and return whether that changed the record.
template <PrefMapRow kRow>
bool SaveLong(unsigned int value, FieldRecord& record) {
  if (value == LongValue<kRow>(record)) return false;
  constexpr bool kHighFirst = kRow.conversion == PrefConversion::kHighWordFirst;
  record.words[kRow.wordIndex + (kHighFirst ? 0 : 1)] = static_cast<unsigned short>(value >> 16);
  record.words[kRow.wordIndex + (kHighFirst ? 1 : 0)] = static_cast<unsigned short>(value);
  return true;
}

template <PrefMapRow kRow>
bool SaveWord(unsigned short value, FieldRecord& record) {
  if constexpr (kRow.conversion == PrefConversion::kNot) value = value == 0;
  if constexpr (kRow.conversion == PrefConversion::kLowByte) {
    value = static_cast<unsigned short>(static_cast<signed char>(value));
  }
  unsigned short& word = record.words[kRow.wordIndex];
  if (value == word) return false;
  word = value;
  return true;
}

template <PrefMapRow kRow>
bool SaveField(FieldRecord& record, const unsigned char* structure) {
  FieldOf<kRow> value;
  std::memcpy(&value, structure + kRow.fieldOffset, sizeof value);
  if constexpr (kRow.fieldSize == 4) {
    return SaveLong<kRow>(value, record);
  } else {
    return SaveWord<kRow>(value, record);
  }
}

// The rows of a table by record, records in the order of their first rows.
template <const auto& kRows>
struct RowsByRecord {
  static constexpr std::size_t kRecords = MeasuresOf(kRows).records;

  std::array<std::size_t, kRows.size()> rows{};  // indexes into the table
  // Where each record's begin in `rows`; at the end, how many there are.
  std::array<std::size_t, kRecords + 1> starts{};

  static constexpr RowsByRecord Make() {
    RowsByRecord made;
    std::size_t filled = 0;
    std::size_t record = 0;
    for (std::size_t first = 0; first < kRows.size(); ++first) {
      if (!FirstOfRecord(kRows, first)) continue;
      for (std::size_t i = first; i < kRows.size(); ++i) {
        if (kRows[i].SameRecord(kRows[first])) made.rows[filled++] = i;
      }
      made.starts[++record] = filled;
    }
    return made;
  }
};

template <const auto& kRows>
constexpr RowsByRecord<kRows> kByRecord = RowsByRecord<kRows>::Make();

// Calls `use.operator()<row>()` for every row of a table's record.
template <const auto& kRows, std::size_t kRecord, typename Use>
void ForEachRow(Use use) {
  constexpr std::size_t kStart = kByRecord<kRows>.starts[kRecord];
  constexpr std::size_t kCount = kByRecord<kRows>.starts[kRecord + 1] - kStart;
  [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    (use.template operator()<kRows[kByRecord<kRows>.rows[kStart + kIndex]]>(), ...);
  }
  (std::make_index_sequence<kCount>());
}

// A record of a table on its way from or to the host.
template <const auto& kRows, std::size_t kRecord>
struct TravellingRecord {
  static constexpr PrefMapRow kFirst = kRows[kByRecord<kRows>.rows[kByRecord<kRows>.starts[kRecord]]];
  static constexpr unsigned int kTag = FourCharacterTag({'o', 't', kFirst.recordChars[0], kFirst.recordChars[1], '\0'});

  const EDataID key = RecordKey(kFirst.cmper, kFirst.subIndex);
  FieldRecord record;

  explicit TravellingRecord(const Loader& load) { load(kTag, key, &record); }

  void LoadInto(unsigned char* structure) const {
    ForEachRow<kRows, kRecord>([&]<PrefMapRow kRow>() { LoadField<kRow>(record, structure); });
  }

  void SaveFrom(const unsigned char* structure, const Saver& save) {
    bool changed = false;
    ForEachRow<kRows, kRecord>([&]<PrefMapRow kRow>() { changed |= SaveField<kRow>(record, structure); });
    if (changed) save(kTag, key, &record);
  }
};

template <const auto& kRows>
void LoadStructure(unsigned char* structure) {
  const Loader load;
  [&]<std::size_t... kRecord>(std::index_sequence<kRecord...>) {
    (TravellingRecord<kRows, kRecord>(load).LoadInto(structure), ...);
  }
  (std::make_index_sequence<RowsByRecord<kRows>::kRecords>());
}

// Saves the records in which a word changes, each right after it was loaded.
template <const auto& kRows>
void SaveStructure(const unsigned char* structure) {
  const Loader load;
  const Saver save;
  [&]<std::size_t... kRecord>(std::index_sequence<kRecord...>) {
    (TravellingRecord<kRows, kRecord>(load).SaveFrom(structure, save), ...);
  }
  (std::make_index_sequence<RowsByRecord<kRows>::kRecords>());
}

// The measures stand beside the table's name so that a row that was lost or mistyped does not compile.
template <const auto& kRows, PrefTableMeasures kMeasures>
constexpr PreferenceTable Table(const char (&tag)[5]) {
  static_assert(MeasuresOf(kRows) == kMeasures);
  static_assert(Disjoint(kRows));
  return {FourCharacterTag(tag), kRows, kMeasures.size, &LoadStructure<kRows>, &SaveStructure<kRows>};
}

short LoadTable(const PreferenceTable& table, void* buffer, int* size) {
  if (size == nullptr) return 0;
  *size = table.size;
  if (buffer != nullptr) table.load(static_cast<unsigned char*>(buffer));
  return 1;
}

short SaveTable(const PreferenceTable& table, const void* buffer, int size) {
  if (buffer == nullptr || size < static_cast<int>(table.rows.size()) * 2) return 0;
  table.save(static_cast<const unsigned char*>(buffer));
  return 1;
}

// An array of records behind a preference tag.
struct RecordArray {
  unsigned int tag;
  short count;
  short firstSubIndex;

  int Size() const { return count * kRecordSize; }
  EDataID Key(int index) const { return RecordKey(EDataID::kDocument, static_cast<short>(firstSubIndex + index)); }
};

short LoadArray(const RecordArray& array, void* buffer, int* size) {
  if (size == nullptr) return 0;
  if (buffer != nullptr) {
    if (*size < array.Size()) return 0;
    const Loader load;
    for (int i = 0; i < array.count; ++i) {
      load(array.tag, array.Key(i), static_cast<unsigned char*>(buffer) + i * kRecordSize);
    }
  }
  *size = array.Size();
  return 1;
}

short SaveArray(const RecordArray& array, const void* buffer, int size) {
  if (buffer == nullptr || size < array.Size()) return 0;
  const Saver save;
  for (int i = 0; i < array.count; ++i) {
    save(array.tag, array.Key(i), static_cast<const unsigned char*>(buffer) + i * kRecordSize);
  }
  return 1;
}

short Instance(const EDataID* id) { return id != nullptr ? id->global.instance : short{0}; }

// The table of a preference tag, or null. The key is read for the page format alone, whose instance 1 is an array.
const PreferenceTable* FindTable(unsigned int tag, const EDataID* id) {
  const auto table = std::find_if(kPreferenceTables.begin(), kPreferenceTables.end(),
                                  [tag](const PreferenceTable& known) { return known.tag == tag; });
  if (table == kPreferenceTables.end() || (tag == record_tags::kPageFormat && Instance(id) != 0)) return nullptr;
  return &*table;
}

// Finds what a tag is mapped to and has it served; false when it is not mapped at all.
template <typename ServeTable, typename ServeArray>
bool Serve(unsigned int tag, const EDataID* id, short& result, ServeTable serve_table, ServeArray serve_array) {
  if (!IsPreferenceTag(tag)) return false;
  if (const PreferenceTable* const table = FindTable(tag, id)) {
    result = serve_table(*table);
    return true;
  }
  RecordArray array{};
  const bool in_range = mapPrefTag(tag, Instance(id), &array.tag, &array.count, &array.firstSubIndex);
  if (in_range && array.tag == 0) return false;
  result = in_range ? serve_array(array) : short{0};
  return true;
}

}  // namespace

constinit const std::array<PreferenceTable, 10> kPreferenceTables = {
    Table<EDTDistancePrefs_MAP_ARRAY, PrefTableMeasures{.rows = 36, .size = 76, .reach = 76, .records = 15}>("pfDP"),
    Table<EDTSizePrefs_MAP_ARRAY, PrefTableMeasures{.rows = 23, .size = 54, .reach = 54, .records = 15}>("pfSI"),
    Table<EDTMiscDocPrefs_MAP_ARRAY, PrefTableMeasures{.rows = 49, .size = 104, .reach = 104, .records = 23}>("pfMS"),
    Table<EDTRepeatPrefs_MAP_ARRAY, PrefTableMeasures{.rows = 20, .size = 40, .reach = 40, .records = 5}>("pfRP"),
    Table<EDTPianoBracePrefs_MAP_ARRAY, PrefTableMeasures{.rows = 11, .size = 44, .reach = 44, .records = 5}>("pfPB"),
    Table<EDTSmartShapePrefs_MAP_ARRAY, PrefTableMeasures{.rows = 43, .size = 96, .reach = 108, .records = 12}>("pfSS"),
    Table<EDTPlaybackPrefs_MAP_ARRAY, PrefTableMeasures{.rows = 7, .size = 14, .reach = 14, .records = 4}>("pfPL"),
    Table<EDTExtractPrefs_MAP_ARRAY, PrefTableMeasures{.rows = 25, .size = 50, .reach = 50, .records = 5}>("pfEX"),
    Table<EDTPageFormatPrefsScore_MAP_ARRAY, PrefTableMeasures{.rows = 22, .size = 48, .reach = 48, .records = 9}>(
        "pfPF"),
    Table<EDT2005Prefs_MAP_ARRAY, PrefTableMeasures{.rows = 11, .size = 22, .reach = 22, .records = 9}>("pf05"),
};

bool mapPrefTag(unsigned int tag, short instance, unsigned int* mappedTag, short* count, short* firstSubIndex) {
  *mappedTag = 0;
  *count = 0;
  *firstSubIndex = 0;
  const auto mapping = std::find_if(std::begin(kArrayMappings), std::end(kArrayMappings),
                                    [tag](const ArrayMapping& known) { return known.tag == tag; });
  if (mapping == std::end(kArrayMappings)) return true;
  const auto index = static_cast<unsigned short>(instance - 1);
  if (mapping->instances != 0 && index >= mapping->instances) return false;
  *mappedTag = mapping->recordTag;
  *count = mapping->count;
  if (mapping->instances != 0) *firstSubIndex = static_cast<short>(index);
  return true;
}

bool LoadPreference(unsigned int tag, const EDataID* id, void* buffer, int* size, short& result) {
  return Serve(
      tag, id, result, [&](const PreferenceTable& table) { return LoadTable(table, buffer, size); },
      [&](const RecordArray& array) { return LoadArray(array, buffer, size); });
}

bool SavePreference(unsigned int tag, const EDataID* id, const void* buffer, int size, short& result) {
  return Serve(
      tag, id, result, [&](const PreferenceTable& table) { return SaveTable(table, buffer, size); },
      [&](const RecordArray& array) { return SaveArray(array, buffer, size); });
}
