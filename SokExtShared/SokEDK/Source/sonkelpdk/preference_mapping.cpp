#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_mapping.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_tables.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

namespace {

constexpr unsigned short kPreferenceCmper = 65534;
constexpr unsigned int kScorePageFormatTag = FourCharacterTag("pfPF");

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

// Host calls for one per-field record.
FieldRecord LoadRecord(unsigned int tag, const EDataID& id) {
  FieldRecord record{};
  int size = kRecordSize;
  SX_LoadEData(tag, &id, &record, &size, kInterfaceVersion);
  return record;
}

void SaveRecord(unsigned int tag, const EDataID& id, const void* record) {
  SX_SaveEData(tag, &id, record, kRecordSize, kInterfaceVersion);
}

EDataID RecordKey(unsigned short cmper, short subIndex) {
  EDataID id{};
  id.other.cmper = cmper != 0 ? cmper : kPreferenceCmper;
  id.other.subIndex = subIndex;
  return id;
}

unsigned int RecordTag(const PrefMapRow& row) {
  return FourCharacterTag({'o', 't', row.recordChars[0], row.recordChars[1], '\0'});
}

unsigned int LongValue(const PrefMapRow& row, const FieldRecord& record) {
  const unsigned int first = record.words[row.wordIndex];
  const unsigned int second = record.words[row.wordIndex + 1];
  switch (row.conversion) {
    case kHighWordFirst:
      return first << 16 | second;
    case kLowWordFirst:
      return second << 16 | first;
    default:
      return 0;
  }
}

unsigned short WordValue(const PrefMapRow& row, const FieldRecord& record) {
  const unsigned short word = record.words[row.wordIndex];
  switch (row.conversion) {
    case kNot:
      return word == 0;
    case kLowByte:
      return word & 0xFF;
    default:
      return word;
  }
}

void LoadField(const PrefMapRow& row, const FieldRecord& record, unsigned char* structure) {
  unsigned char* const field = structure + row.fieldOffset;
  if (row.fieldSize == 4) {
    const unsigned int value = LongValue(row, record);
    std::memcpy(field, &value, sizeof value);
  } else {
    const unsigned short value = WordValue(row, record);
    std::memcpy(field, &value, sizeof value);
  }
}

bool SaveLong(const PrefMapRow& row, unsigned int value, FieldRecord& record) {
  if (value == LongValue(row, record)) return false;
  const auto high = static_cast<unsigned short>(value >> 16);
  const auto low = static_cast<unsigned short>(value);
  unsigned short* const words = record.words + row.wordIndex;
  if (row.conversion == kHighWordFirst) {
    words[0] = high;
    words[1] = low;
  } else if (row.conversion == kLowWordFirst) {
    words[0] = low;
    words[1] = high;
  }
  return true;
}

bool SaveWord(const PrefMapRow& row, unsigned short value, FieldRecord& record) {
  if (row.conversion == kNot) value = value == 0;
  if (row.conversion == kLowByte) value = static_cast<unsigned short>(static_cast<signed char>(value));
  unsigned short& word = record.words[row.wordIndex];
  if (value == word) return false;
  word = value;
  return true;
}

// Puts a field into its record; returns whether that changed the record.
bool SaveField(const PrefMapRow& row, FieldRecord& record, const unsigned char* structure) {
  const unsigned char* const field = structure + row.fieldOffset;
  if (row.fieldSize == 4) {
    unsigned int value;
    std::memcpy(&value, field, sizeof value);
    return SaveLong(row, value, record);
  }
  unsigned short value;
  std::memcpy(&value, field, sizeof value);
  return SaveWord(row, value, record);
}

// Loads every record of a table once, in the order of its first row, and gives it to `use(row, record)` for each of
// its rows. Records of which some use changed a word are saved.
template <typename Use>
void ForEachField(const PreferenceTable& table, Use use) {
  for (PrefMapRow& row : table.rows) row.done = 0;
  for (auto place = table.by_record.begin(); place != table.by_record.end();) {
    const unsigned int tag = RecordTag(*place->row);
    const EDataID id = RecordKey(place->row->cmper, place->row->subIndex);
    FieldRecord record = LoadRecord(tag, id);
    bool changed = false;
    for (const auto record_end = place + place->of_record; place != record_end; ++place) {
      changed |= use(*place->row, record);
      place->row->done = 1;
    }
    if (changed) SaveRecord(tag, id, &record);
  }
}

short LoadTable(const PreferenceTable& table, void* buffer, int* size) {
  if (size == nullptr) return 0;
  *size = table.size;
  if (buffer == nullptr) return 1;
  ForEachField(table, [structure = static_cast<unsigned char*>(buffer)](const PrefMapRow& row, FieldRecord& record) {
    LoadField(row, record, structure);
    return false;
  });
  return 1;
}

short SaveTable(const PreferenceTable& table, const void* buffer, int size) {
  if (buffer == nullptr || size < static_cast<int>(table.rows.size()) * 2) return 0;
  ForEachField(table, [structure = static_cast<const unsigned char*>(buffer)](
                          const PrefMapRow& row, FieldRecord& record) { return SaveField(row, record, structure); });
  return 1;
}

// An array of records behind a preference tag.
struct RecordArray {
  unsigned int tag;
  short count;
  short firstSubIndex;

  int Size() const { return count * kRecordSize; }
  EDataID Key(int index) const { return RecordKey(kPreferenceCmper, static_cast<short>(firstSubIndex + index)); }
};

short LoadArray(const RecordArray& array, void* buffer, int* size) {
  if (size == nullptr) return 0;
  if (buffer != nullptr) {
    if (*size < array.Size()) return 0;
    for (int i = 0; i < array.count; ++i) {
      const FieldRecord record = LoadRecord(array.tag, array.Key(i));
      std::memcpy(static_cast<unsigned char*>(buffer) + i * kRecordSize, &record, kRecordSize);
    }
  }
  *size = array.Size();
  return 1;
}

short SaveArray(const RecordArray& array, const void* buffer, int size) {
  if (buffer == nullptr || size < array.Size()) return 0;
  for (int i = 0; i < array.count; ++i) {
    SaveRecord(array.tag, array.Key(i), static_cast<const unsigned char*>(buffer) + i * kRecordSize);
  }
  return 1;
}

short Instance(const EDataID* id) { return id != nullptr ? id->global.instance : short{0}; }

// The table of a preference tag, or null. The key is read for the page format alone, whose instance 1 is an array.
const PreferenceTable* FindTable(unsigned int tag, const EDataID* id) {
  const auto table = std::find_if(kPreferenceTables.begin(), kPreferenceTables.end(),
                                  [tag](const PreferenceTable& known) { return known.tag == tag; });
  if (table == kPreferenceTables.end() || (tag == kScorePageFormatTag && Instance(id) != 0)) return nullptr;
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
