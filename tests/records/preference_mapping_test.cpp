#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_mapping.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <sstream>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/SokEDK/Source/edk/preferences.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"
#include "tests/support/test_host.h"

namespace {

using record_calls::GlobalKey;
using Words = std::array<unsigned short, 6>;

short LoadStructure(unsigned int tag, void* buffer, int* size = nullptr) {
  const EDataID id{};
  int unstated = 0;
  return SX_LoadEData(tag, &id, buffer, size != nullptr ? size : &unstated, kInterfaceVersion);
}

short SaveStructure(unsigned int tag, const void* buffer, int size) {
  const EDataID id{};
  return SX_SaveEData(tag, &id, buffer, size, kInterfaceVersion);
}

// A per-field record's words in the document; instance -2 is cmper 65534.
void SetWords(TestHost& host, unsigned int tag, const Words& words) {
  host.document.records.Save(tag, GlobalKey(-2), words.data(), 12);
}
Words WordsOf(const TestHost& host, unsigned int tag) {
  Words words{};
  int size = 12;
  host.document.records.Load(tag, GlobalKey(-2), words.data(), &size);
  return words;
}

unsigned int Fnv(std::string_view bytes) {
  unsigned int hash = 2166136261u;
  for (const char byte : bytes) hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619u;
  return hash;
}

// The records in the order of their loads ("41.2": subIndex 2, "FI@10": cmper 10), and the hash of the structure when
// every word holds a value of its own; worked out apart from the tables, so that no row can be mistyped unseen.
struct StructureCase {
  const char (&tag)[5];
  int reported, reach;
  unsigned int hash;
  const char* records;
};
constexpr StructureCase kStructures[] = {
    {"pfDP", 76, 76, 0x4E156142, "21 59 22 67 68 20 13 19 27 18 39 65 14 01 77.4"},
    {"pfSI", 54, 54, 0x1B60B89A, "67 58 68 62 03 23 14 64 27 59 01 97 20 21 69"},
    {"pfMS", 104, 104, 0xE6CC35F3, "36 03 09 41 20 27 01 13 15 44 12 41.2 23 19 31 05 93 76 17 16 62 41.1 FI@10"},
    {"pfRP", 40, 40, 0x8E0ECB01, "70 71 05 72 76"},
    {"pfPB", 44, 44, 0x07A0A776, "65 60 61 64 45"},
    {"pfSS", 96, 108, 0x03D898A1, "92 FI@11 FI@12 12 11 69 51 53 50 53.1 93 97.1"},
    {"pfPL", 14, 14, 0x102F9FC0, "13 39 36 37"},
    {"pfEX", 50, 50, 0x2B796872, "77.4 77.5 77.6 77.7 77.8"},
    {"pfPF", 48, 48, 0xCFF462A4, "14 15 39 16 02 17 01 13 03"},
    {"pf05", 22, 22, 0x66D811B3, "69 20 39 38 23 56 41.2 94 94.2"},
};

std::vector<std::string> ExpectedLoads(const char* records) {
  std::vector<std::string> calls;
  std::istringstream words(records);
  for (std::string word; words >> word;) {
    const std::size_t at = word.find('@'), dot = word.find('.');
    calls.push_back("SX_LoadEData ot" + word.substr(0, 2) + " " +
                    (at == std::string::npos ? "65534" : word.substr(at + 1)) + "," +
                    (dot == std::string::npos ? "0" : word.substr(dot + 1)) + " 12 -> 1");
  }
  return calls;
}

TEST(PreferenceTables, LoadEachRecordOnceAndEachFieldFromItsWord) {
  TestHost host;
  host.after = [](sok::HostCall& call) {
    for (unsigned short i = 0; i < 6; ++i) {
      const std::string word =
          sok::FourCharacters(call.tag) + " " + sok::KeyText(call.tag, *call.id) + " " + std::to_string(i);
      const auto value = static_cast<unsigned short>(Fnv(word));
      std::memcpy(static_cast<char*>(call.buffer) + 2 * i, &value, 2);
    }
    *call.size = 6;  // what the host says of one record is not what the next one is asked for
    call.result = 1;
  };
  for (const StructureCase& c : kStructures) {
    SCOPED_TRACE(c.tag);
    host.calls.clear();
    std::string structure(static_cast<std::size_t>(c.reach) + 2, '\xEE');  // bytes of no field stay as they were
    int size = 0;
    EXPECT_EQ(LoadStructure(FourCharacterTag(c.tag), structure.data(), &size), 1);
    EXPECT_EQ(size, c.reported);
    EXPECT_EQ(Fnv(structure), c.hash);
    EXPECT_EQ(host.calls, ExpectedLoads(c.records));
  }
}

// Every field goes to its own record and comes back, and nothing else is saved.
TEST(PreferenceTables, SaveTheRecordOfAChangedFieldAlone) {
  TestHost host;
  for (const PreferenceTable& table : kPreferenceTables) {
    for (const PrefMapRow& row : table.rows) {
      std::array<unsigned char, 108> structure{};
      LoadStructure(table.tag, structure.data());
      unsigned char* const field = &structure[static_cast<std::size_t>(row.fieldOffset)];
      field[0] ^= row.conversion == PrefConversion::kNot ? 1 : 0x81;
      if (row.conversion <= PrefConversion::kHighWordFirst) field[row.fieldSize - 1] ^= 0xC0;
      host.calls.clear();
      EXPECT_EQ(SaveStructure(table.tag, structure.data(), 108), 1);
      EXPECT_EQ(host.CallsWith("SX_SaveEData"), std::vector{"SX_SaveEData ot" + std::string(row.recordChars, 2) + " " +
                                                            std::to_string(row.cmper != 0 ? row.cmper : 65534) + "," +
                                                            std::to_string(row.subIndex) + " 12 -> 1"});
      std::array<unsigned char, 108> loaded{};
      LoadStructure(table.tag, loaded.data());
      EXPECT_EQ(loaded, structure) << sok::FourCharacters(table.tag) << " offset " << row.fieldOffset;
      host.calls.clear();
      SaveStructure(table.tag, loaded.data(), 108);
      EXPECT_EQ(host.CallsWith("SX_SaveEData"), std::vector<std::string>());
    }
  }
}

// A word as the host has it, the field that it loads as, a field saved over it, and the word then.
struct ConversionCase {
  const char (&tag)[5];
  std::size_t offset;
  const char (&record)[5];
  std::size_t word;
  unsigned short stored, loads_as, saved, stored_then;
};
constexpr ConversionCase kConversions[] = {
    {"pfMS", 12, "ot36", 1, 0, 1, 1, 0},
    {"pfMS", 12, "ot36", 1, 9, 0, 0, 1},  // a flag becomes 0 or 1, whatever true value it had
    {"pfMS", 12, "ot36", 1, 1, 0, 5, 0},
    {"pfMS", 52, "ot19", 4, 0xFFC8, 200, 200, 0xFFC8},
    {"pfMS", 52, "ot19", 4, 0x00C8, 200, 200, 0xFFC8},
    {"pfMS", 54, "ot19", 5, 0x1241, 0x41, 0x3305, 5},
    {"pfSS", 28, "ot12", 5, 0x80, 0x80, 0x7F, 0x7F},
};

TEST(PreferenceTables, ConvertFields) {
  TestHost host;
  for (const ConversionCase& c : kConversions) {
    SCOPED_TRACE(testing::Message() << "case " << &c - kConversions);
    Words words{};
    words[c.word] = c.stored;
    SetWords(host, FourCharacterTag(c.record), words);
    std::array<unsigned short, 54> structure{};
    LoadStructure(FourCharacterTag(c.tag), structure.data());
    EXPECT_EQ(structure[c.offset / 2], c.loads_as);
    structure[c.offset / 2] = c.saved;
    host.calls.clear();
    SaveStructure(FourCharacterTag(c.tag), structure.data(), 108);
    EXPECT_EQ(host.CallsWith("SX_SaveEData").size(), c.stored == c.stored_then ? 0u : 1u);
    EXPECT_EQ(WordsOf(host, FourCharacterTag(c.record))[c.word], c.stored_then);
  }
}

// Fields of a refused record do not get what the record before it held.
TEST(PreferenceTables, WideFieldsStandAtTheirOffsets) {
  TestHost host;
  SetWords(host, 0x6F743630, {0, 0, 0xFFFE, 0xEE90, 0, 0});  // 'ot60'
  auto brace = edk::LoadOrZero<edk::PianoBracePreferences>({});
  EXPECT_EQ(brace.Wide(4), -70000);
  brace.SetWide(4, 0x12348765);
  EXPECT_TRUE(edk::Save({}, brace));
  EXPECT_EQ(WordsOf(host, 0x6F743630), (Words{0, 0, 0x1234, 0x8765, 0, 0}));
}

TEST(PreferenceTables, ARefusedRecordReadsAsZeros) {
  TestHost host;
  SetWords(host, FourCharacterTag("ot70"), {1, 1, 1, 1, 1, 1});
  std::array<unsigned short, 20> repeats;
  repeats.fill(9);
  EXPECT_EQ(LoadStructure(FourCharacterTag("pfRP"), repeats.data()), 1);
  EXPECT_EQ(repeats, (std::array<unsigned short, 20>{1, 1, 1, 1, 1, 1}));
}

// Answers and host calls by tag, instance and stated size; -1 stands for a null size, and no `size_then` for a save.
struct LimitCase {
  const char (&tag)[5];
  short instance;
  bool buffer;
  int size, result;
  std::optional<int> size_then;
  std::size_t calls;
  std::string first_call = "";
};
const LimitCase kLimits[] = {
    {"pfDP", 0, false, 0, 1, 76, 0},
    {"pfDP", -9, true, 1, 1, 76, 15},  // a structure's stated size and key are not looked at
    {"pfDP", 7, true, -1, 0, -1, 0},
    {"pfSS", 0, false, 5, 1, 96, 0},
    {"pfGG", 0, false, 0, 1, 132, 0},
    {"pfGG", 0, true, 131, 0, 131, 0},
    {"pfGG", -3, true, 150, 1, 132, 11, "SX_LoadEData ot88 65534,0 12 -> 0"},
    {"pfGG", 0, true, -1, 0, -1, 0},
    {"pfSN", 128, true, 12, 1, 12, 1, "SX_LoadEData ot40 65534,127 12 -> 0"},
    {"pfPF", 2, true, 48, 0, 48, 0},
    {"pfLA", 3, true, 4, 0, 4, 1, "SX_LoadEData pfLA 3 4 -> 0"},  // not mapped: the host's own
    {"pfDP", 0, true, 71, 0, {}, 0},
    {"pfDP", 0, true, 72, 1, {}, 15},
    {"pfDP", 0, false, 76, 0, {}, 0},
    {"pfTC", 0, true, 59, 0, {}, 0},
    {"pfTC", 0, true, 60, 1, {}, 5, "SX_SaveEData ot86 65534,0 12 -> 1"},
    {"pfPF", 2, true, 48, 0, {}, 0},
};

TEST(PreferenceMapping, ChecksInstancesBuffersAndSizes) {
  TestHost host;
  unsigned char bytes[256] = {};
  for (const LimitCase& c : kLimits) {
    SCOPED_TRACE(testing::Message() << c.tag << " case " << &c - kLimits);
    host.calls.clear();
    const unsigned int tag = FourCharacterTag(c.tag);
    const EDataID id = GlobalKey(c.instance);
    void* const buffer = c.buffer ? bytes : nullptr;
    int size = c.size;
    EXPECT_EQ(c.size_then ? SX_LoadEData(tag, &id, buffer, c.size < 0 ? nullptr : &size, kInterfaceVersion)
                          : SX_SaveEData(tag, &id, buffer, c.size, kInterfaceVersion),
              c.result);
    EXPECT_EQ(size, c.size_then.value_or(c.size));
    ASSERT_EQ(host.calls.size(), c.calls);
    EXPECT_EQ(c.first_call.empty() ? "" : host.calls[0], c.first_call);
  }
}

// Preference, record, how many of them, and the last instance accepted (0: any).
TEST(PreferenceMapping, ArraysByTagAndInstance) {
  std::istringstream rows(
      "pfGD ot79 1 0  pfGG ot88 11 0  pfGb ot98 1 4  pfGd ot80 1 0  pfGs ot91 1 1  pfMM ot25 2 0  pfND ot04 1 0 "
      "pfNd ot66 1 0  pfPF ot77 4 1  pfSC ot52 2 0  pfSN ot40 1 128  pfSP ot94 3 0  pfSl ot26 1 15  pfTC ot86 5 0 "
      "pfTI ot84 4 0  pfTX ot78 9 0  pfTp ot85 4 0  pfTs ot90 1 9");
  const auto tag_of = [](const std::string& text) {
    return FourCharacterTag(reinterpret_cast<const char(&)[5]>(*text.c_str()));
  };
  std::string preference, record;
  for (short records, last; rows >> preference >> record >> records >> last;) {
    for (short instance = -2; instance < 300; ++instance) {
      unsigned int mapped = 9;
      short count = 9, first = 9;
      const bool accepted = last == 0 || (1 <= instance && instance <= last);
      ASSERT_EQ(mapPrefTag(tag_of(preference), instance, &mapped, &count, &first), accepted) << preference << instance;
      ASSERT_EQ(mapped, accepted ? tag_of(record) : 0) << preference;
      ASSERT_EQ(count, accepted ? records : 0) << preference;
      ASSERT_EQ(first, accepted && last != 0 ? instance - 1 : 0) << preference;
    }
  }
}

// Records of an array stay in order, both ways, under the interface version whatever the caller's.
TEST(PreferenceMapping, ArraysAreRecordsOneAfterTheOther) {
  TestHost host;
  host.any_version = true;
  std::vector<unsigned int> versions;
  host.after = [&](sok::HostCall& call) {
    versions.push_back(call.version);
    if (call.size != nullptr) *call.size = 3;
  };
  std::string saved = "first recordsecond one.third recordthe fourth..", loaded(48, '\0');
  saved.resize(48);
  const EDataID id = GlobalKey(1);
  int size = 48;
  EXPECT_EQ(SX_SaveEData(FourCharacterTag("pfPF"), &id, saved.data(), 48, 0x08000000), 1);
  EXPECT_EQ(SX_LoadEData(FourCharacterTag("pfPF"), &id, loaded.data(), &size, 0x07FFFFFF), 1);
  EXPECT_EQ(loaded, saved);
  EXPECT_EQ(versions, std::vector<unsigned int>(8, kInterfaceVersion));
  EXPECT_EQ(host.calls[7], "SX_LoadEData ot77 65534,3 12 -> 1");
  SX_SaveEData(FourCharacterTag("pfPF"), &id, saved.data(), 48, 0x07FFFFFF);
  EXPECT_EQ(host.calls[8], "SX_SaveEData pfPF 1 48 -> 1");  // old callers reach the host
}

}  // namespace
