// Find-or-create: what counts as the same definition, what a new one looks like, and what is made of failures.
#include "SokExtShared/LIB/notation/definitions.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "SokExtShared/LIB/notation/chord_suffixes.h"
#include "SokExtShared/LIB/notation/entry_attachments.h"
#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kTextRepeatText = 0x6F735254, kTextRepeat = 0x534F5253, kArticulation = 0x4F044958;
constexpr unsigned int kUpperList = 0x6F744443, kLowerList = 0x6F746463, kUpperOptional = 0x6F74494F;
constexpr unsigned int kListName = 0x6F734463, kNotehead = 0x4502636E, kAssignment = 0x6564494D;

using Bytes = std::vector<unsigned char>;

// 16-bit units; the literals in tests are all of one unit a character.
struct Units : std::vector<unsigned short> {
  explicit Units(std::u16string_view text) : vector(text.begin(), text.end()) { push_back(0); }
  operator const unsigned short*() const { return data(); }
};

EDataID Other(int number, int subIndex = 0) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(number);
  id.other.subIndex = static_cast<short>(subIndex);
  return id;
}

EDataID EntryDetail(int entry, int subIndex) {
  EDataID id{};
  id.entryDetail.entryNum = entry;
  id.entryDetail.subIndex = static_cast<short>(subIndex);
  return id;
}

Bytes Record(const TestHost& host, unsigned int tag, const EDataID& id) {
  int size = 0;
  if (!host.document.records.Load(tag, id, nullptr, &size)) return {};
  Bytes bytes(static_cast<size_t>(size));
  host.document.records.Load(tag, id, bytes.data(), &size);
  return bytes;
}

// Little-endian words.
Bytes Words(std::initializer_list<int> words) {
  Bytes bytes;
  for (const int word : words) {
    bytes.push_back(static_cast<unsigned char>(word));
    bytes.push_back(static_cast<unsigned char>(word >> 8));
  }
  return bytes;
}

void Save(TestHost& host, unsigned int tag, const EDataID& id, const Bytes& bytes) {
  host.document.records.Save(tag, id, bytes.data(), static_cast<int>(bytes.size()));
}

TEST(TextRepeats, AreTheSameWithTheSameTextFontAndValues) {
  TestHost host;
  const Units text(u"D.C.");
  EXPECT_EQ(FindOrCreateTextRepeat(text, -2, -3, 0xFFFF, 5), 1);
  EXPECT_EQ(Record(host, kTextRepeat, Other(1)), Words({0, 0, -2, -3, 0xFFFF, 5, 0, 0}));
  EXPECT_EQ(Record(host, kTextRepeatText, Other(1)), Words({'D', '.', 'C', '.', 0}));
  EXPECT_EQ(FindOrCreateTextRepeat(text, -2, -3, 0xFFFF, 5), 1);
  EXPECT_EQ(FindOrCreateTextRepeat(text, -2, -4, 0xFFFF, 5), 2);
  EXPECT_EQ(FindOrCreateTextRepeat(Units(u"D.C"), -2, -3, 0xFFFF, 5), 3);
  EXPECT_EQ(FindOrCreateTextRepeat(text, -3, -3, 0xFFFF, 5), 4);
  EXPECT_EQ(FindOrCreateTextRepeat(text, -2, -3, -1, 5), 5);  // stored as 0xFFFF, but no unsigned word equals -1
  EXPECT_EQ(FindOrCreateTextRepeat(text, 0xFFFE, -3, 0xFFFF, 5), 6);
  EXPECT_EQ(FindOrCreateTextRepeat(text, -2, -3, 0xFFFF, 6), 7);
  const short font = host.document.AddFont("Maestro");
  EXPECT_EQ(FindOrCreateTextRepeat(text, Units(u"Maestro"), 1, 2, 3), 8);
  EXPECT_EQ(FindOrCreateTextRepeat(text, FontNameToNum(Units(u"Maestro")), 1, 2, 3), 8);
  EXPECT_EQ(FontNameToNum(Units(u"Maestro")), font);
  EXPECT_EQ(FontNameToNum(Units(u"Nobody")), -1);
}

// A text that fills the buffer must neither lose its end mark nor be created anew every time.
TEST(TextRepeats, LongTextsAreCutAt49Units) {
  TestHost host;
  const std::u16string long_text(120, u'x');
  for (const size_t length : {49u, 50u, 51u, 120u}) {
    EXPECT_EQ(FindOrCreateTextRepeat(Units(long_text.substr(0, length)), 0, 0, 0, 0), 1) << length;
  }
  EXPECT_EQ(Record(host, kTextRepeatText, Other(1)).size(), 100u);
  Save(host, kTextRepeatText, Other(1), Bytes(300, 'x'));  // unterminated, from elsewhere
  FindOrCreateTextRepeat(Units(long_text), 0, 0, 0, 0);
  EXPECT_EQ(FindOrCreateTextRepeat(Units(long_text.substr(0, 48)), 0, 0, 0, 0), 3);
}

TEST(TextRepeats, BeyondNumber99AreNeverFound) {
  TestHost host;
  Save(host, kTextRepeat, Other(100), Words({0, 0, 1, 2, 3, 4, 0, 0}));
  Save(host, kTextRepeatText, Other(100), Words({'a', 0}));
  EXPECT_EQ(FindOrCreateTextRepeat(Units(u"a"), 1, 2, 3, 4), 101);
  EXPECT_EQ(FindOrCreateTextRepeat(Units(u"a"), 1, 2, 3, 4), 102);
}

TEST(StaffLists, TheTopStaffsIsFoundByContents) {
  TestHost host;
  const Bytes top = Words({-1, 0, 0, 0, 0, 0});
  Save(host, kUpperList, Other(1), Words({-1, 2, 0, 0, 0, 0}));
  Save(host, kLowerList, Other(1), top);
  Save(host, kUpperList, Other(2), top);
  Save(host, kLowerList, Other(2), top);
  Save(host, kUpperOptional, Other(2), top);
  Save(host, kUpperOptional, Other(3), top);  // left over, goes when list 3 is made
  EXPECT_EQ(FindOrCreateOnTopStaffList(Units(u"Top")), 3);
  EXPECT_EQ(Record(host, kUpperList, Other(3)), top);
  EXPECT_EQ(Record(host, kLowerList, Other(3)), top);
  EXPECT_EQ(Record(host, kListName, Other(3)), Words({'T', 'o', 'p'}));
  EXPECT_TRUE(Record(host, kUpperOptional, Other(3)).empty());
  EXPECT_EQ(FindOrCreateOnTopStaffList(Units(u"Another name")), 3);
}

TEST(StaffLists, RefusedInstrumentListsGiveNone) {
  TestHost host;
  for (const char* refused : {"SX_CreateEData", "SX_SaveEData"}) {
    host.refuse = [&](const sok::HostCall& call) { return call.name == std::string_view(refused); };
    host.calls.clear();
    EXPECT_EQ(FindOrCreateOnTopStaffList(Units(u"")), 0) << refused;
    EXPECT_TRUE(host.CallsWith("osDc").empty() && host.CallsWith("SX_DeleteEData").empty()) << refused;
  }
}

TEST(Articulations, TheLastTenBytesDoNotCount) {
  TestHost host;
  EDTArticulationDefinition2012 definition{};
  definition.words[24] = 7;
  EXPECT_EQ(FindOrCreateArticulation(definition), 1);
  definition.host50[0] = 1;
  EXPECT_EQ(FindOrCreateArticulation(definition), 1);
  definition.words[24] = 8;
  EXPECT_EQ(FindOrCreateArticulation(definition), 2);
  definition.words[0] = 1;
  Save(host, kArticulation, Other(1000), Bytes(60));
  EXPECT_EQ(FindOrCreateArticulation({}), 1000);
  EXPECT_EQ(FindOrCreateArticulation(definition), 1001);
  EXPECT_EQ(Record(host, kArticulation, Other(1001))[50], 1);
  EXPECT_EQ(FindOrCreateArticulation(definition), 1002);
}

// Suffixes against vectors of their own; the numbers in use never have gaps in their elements.
TEST(ChordSuffixes, FollowAModelThroughRandomOperations) {
  TestHost host;
  std::mt19937 random(8);
  std::vector<std::vector<EDTChordSuffix2012>> model(1);  // [number]
  for (int round = 0; round < 200; ++round) {
    std::vector<EDTChordSuffix2012> wanted(1 + random() % 3);
    for (auto& element : wanted) {
      element.words[0] = static_cast<short>(random() % 2);
      element.words[2] = static_cast<short>(random());
      element.words[7] = static_cast<short>(random() % 2);
    }
    size_t expected = 1;
    const auto same = [](auto& a, auto& b) { return a.words[0] == b.words[0] && a.words[7] == b.words[7]; };
    while (expected < model.size() &&
           !std::equal(wanted.begin(), wanted.end(), model[expected].begin(), model[expected].end(), same)) {
      ++expected;
    }
    if (expected == model.size()) model.push_back(wanted);
    ASSERT_EQ(FindOrCreateChordSuffix(wanted), static_cast<int>(expected));
    std::vector<EDTChordSuffix2012> loaded(9);
    ASSERT_TRUE(sx_loadchordsuffix(static_cast<int>(expected), loaded));
    ASSERT_EQ(loaded.size(), model[expected].size());
    ASSERT_EQ(std::memcmp(loaded.data(), model[expected].data(), loaded.size() * 16), 0);
  }
  std::vector<EDTChordSuffix2012> none;
  EXPECT_EQ(FindOrCreateChordSuffix(none), static_cast<int>(model.size()));
  EXPECT_FALSE(sx_loadchordsuffix(static_cast<int>(model.size()), none));
}

// The host's subIndex drives the keys, the vector the number of elements; what stood behind them goes.
TEST(ChordSuffixes, SavingEndsWithTheElementsGiven) {
  TestHost host;
  for (int i = 0; i < 6; ++i) Save(host, 0x534F4956, Other(4, i), Bytes(16));
  int number = 4;
  std::vector<EDTChordSuffix2012> elements(2);
  host.calls.clear();
  EXPECT_TRUE(sx_savechordsuffix(number, elements));
  std::vector<std::string> expected;
  for (const char* call : {"SX_CreateEData SOIV 4,0 16 -> 0", "SX_CreateEData SOIV 4,1 16 -> 0"})
    expected.push_back(call);
  for (int i = 0; i < 5; ++i) expected.push_back(std::string("SX_DeleteEData SOIV 4,2 -> ") + (i < 4 ? "1" : "0"));
  EXPECT_EQ(host.calls, expected);
  EXPECT_TRUE(sx_loadchordsuffix(4, elements));
  EXPECT_EQ(elements.size(), 2u);

  number = -1;
  EXPECT_TRUE(sx_savechordsuffix(number, elements));
  EXPECT_EQ(number, 5);
}

TEST(EntryAttachments, AreStoredAndFlaggedWhateverTheHostSays) {
  TestHost host;
  EXENTRY entry{};
  entry.number = 70001;
  entry.notes[1].identifier = -5;
  EXPECT_TRUE(ChangeNotehead(entry, 1, 0x11223344));
  const Bytes added = Words({-5, 0, 0, 0x3344, 0x1122, 0, 0, 0, 0, 0});
  EXPECT_EQ(Record(host, kNotehead, EntryDetail(70001, 0)), added);
  EXPECT_EQ(entry.flags + 0, 0x00400000u);

  Save(host, kNotehead, EntryDetail(70001, 0), Words({3, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
  Save(host, kNotehead, EntryDetail(70001, 1), Words({-5, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
  EXPECT_TRUE(ChangeNotehead(entry, 1, -1));
  EXPECT_EQ(Record(host, kNotehead, EntryDetail(70001, 1)), Words({-5, 1, 2, -1, -1, 5, 6, 7, 8, 9}));
  EXPECT_TRUE(Record(host, kNotehead, EntryDetail(70001, 2)).empty());

  EXPECT_TRUE(AddArticulation(entry, 0x8001, -2, 3));
  EXPECT_TRUE(AddArticulation(entry, 4, 5, 6));
  EXPECT_EQ(Record(host, kAssignment, EntryDetail(70001, 0)), Words({0x8001, -2, 0, 3, 0, 0}));
  EXPECT_EQ(Record(host, kAssignment, EntryDetail(70001, 1)), Words({4, 5, 0, 6, 0, 0}));

  host.refuse = [](const sok::HostCall&) { return true; };
  entry.flags = 1;
  EXPECT_FALSE(ChangeNotehead(entry, 0, 1));
  EXPECT_FALSE(AddArticulation(entry, 1, 1, 1));
  EXPECT_EQ(entry.flags + 0, 0x00600001u);
}

}  // namespace
