// Find-or-create: what counts as the same definition, what a new one looks like, and what is made of failures.
#include "SokExtShared/LIB/notation/definitions.h"

#include <gtest/gtest.h>

#include "SokExtShared/LIB/notation/chord_suffixes.h"
#include "SokExtShared/LIB/notation/entry_attachments.h"
#include "SokExtShared/LIB/records/record_calls.h"
#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kRepeatText = 0x6F735254, kRepeat = 0x534F5253, kArticulation = 0x4F044958;
constexpr unsigned int kUpper = 0x6F744443, kLower = 0x6F746463, kListName = 0x6F734463;
constexpr unsigned int kUpperOptional = 0x6F74494F, kLowerOptional = 0x6F74696F;
constexpr unsigned int kSuffix = 0x534F4956, kNotehead = 0x4502636E, kAssignment = 0x6564494D;
using Words = std::vector<unsigned short>;

Words Units(std::u16string_view text) {
  Words units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

struct DefinitionHost : TestHost {
  static EDataID Key(unsigned int tag, int number, int place) {
    const bool of_entry = tag == kNotehead || tag == kAssignment;
    return of_entry ? record_calls::EntryDetailKey(number, place) : record_calls::OtherKey(number, place);
  }
  void Set(unsigned int tag, int number, const Words& words, int place = 0) {
    document.records.Save(tag, Key(tag, number, place), words.data(), static_cast<int>(words.size() * 2));
  }
  Words Get(unsigned int tag, int number, int place = 0) const {
    int size = 0;
    document.records.Load(tag, Key(tag, number, place), nullptr, &size);
    Words words(static_cast<std::size_t>(size) / 2);
    document.records.Load(tag, Key(tag, number, place), words.data(), &size);
    return words;
  }
};

TEST(TextRepeats, AreTheSameWithTheSameTextFontAndValues) {
  DefinitionHost host;
  const Words text = Units(u"D.C.");
  struct Case {
    std::u16string text;
    int font, a, b, c, number;
  };
  const std::u16string longest(49, u'x');
  for (const Case& c : {Case{u"D.C.", -2, -3, 0xFFFF, 5, 1},
                        {u"D.C.", -2, -3, 0xFFFF, 5, 1},
                        {u"D.C.", -2, -4, 0xFFFF, 5, 2},
                        {u"D.C", -2, -3, 0xFFFF, 5, 3},
                        {u"D.C.", -3, -3, 0xFFFF, 5, 4},
                        {u"D.C.", -2, -3, -1, 5, 5},
                        {u"D.C.", 0xFFFE, -3, 0xFFFF, 5, 6},
                        {u"D.C.", -2, -3, 0xFFFF, 6, 7},
                        {longest, 0, 0, 0, 0, 8},
                        {longest + u"x", 0, 0, 0, 0, 8},
                        {longest + longest, 0, 0, 0, 0, 8}}) {
    EXPECT_EQ(FindOrCreateTextRepeat(Units(c.text).data(), c.font, c.a, c.b, c.c), c.number);
  }
  EXPECT_EQ(host.Get(kRepeat, 1), (Words{0, 0, 0xFFFE, 0xFFFD, 0xFFFF, 5, 0, 0}));
  EXPECT_EQ(host.Get(kRepeatText, 1), text);
  EXPECT_EQ(host.Get(kRepeatText, 8), Units(longest));
  host.Set(kRepeatText, 8, Words(150, 'x'));  // unterminated, from elsewhere
  EXPECT_EQ(FindOrCreateTextRepeat(Units(longest).data(), 0, 0, 0, 0), 8);
  host.Set(kRepeat, 100, {0, 0, 1, 2, 3, 4, 0, 0});
  host.Set(kRepeatText, 100, text);
  EXPECT_EQ(FindOrCreateTextRepeat(text.data(), 1, 2, 3, 4), 101);  // beyond 99 none is found
  host.document.AddFont("Other");
  host.document.AddFont("Second");
  EXPECT_EQ(FindOrCreateTextRepeat(text.data(), Units(u"Second").data(), 0, 0, 0), 102);
  EXPECT_EQ(host.Get(kRepeat, 102)[2], 1);
}

TEST(StaffLists, TheTopStaffsIsFoundByContents) {
  DefinitionHost host;
  const Words top = {0xFFFF, 0, 0, 0, 0, 0}, name = Units(u"Top");
  for (const char* refused : {"SX_CreateEData", "SX_SaveEData"}) {
    host.refuse = [&](const sok::HostCall& call) { return call.name == std::string_view(refused); };
    EXPECT_EQ(FindOrCreateOnTopStaffList(name.data()), 0) << refused;
    EXPECT_TRUE(host.CallsWith("osDc").empty() && host.CallsWith("SX_DeleteEData").empty()) << refused;
  }
  host.refuse = nullptr;
  host.Set(kUpper, 1, {0xFFFF, 2, 0, 0, 0, 0});
  host.Set(kUpper, 2, top);
  for (const int list : {1, 2}) host.Set(kLower, list, top);
  for (const int list : {2, 3}) {  // those of list 3 are left over, and go
    for (const unsigned int optional : {kUpperOptional, kLowerOptional}) host.Set(optional, list, top);
  }
  for (const auto& wanted : {name, Units(u"Another")}) EXPECT_EQ(FindOrCreateOnTopStaffList(wanted.data()), 3);
  EXPECT_TRUE(host.Get(kUpper, 3) == top && host.Get(kLower, 3) == top && host.Get(kUpperOptional, 3).empty() &&
              host.Get(kLowerOptional, 3).empty());
  EXPECT_EQ(host.Get(kListName, 3), (Words{'T', 'o', 'p'}));
}

TEST(Articulations, TheLastTenBytesDoNotCount) {
  DefinitionHost host;
  EDTArticulationDefinition2012 definition{};
  definition.words[24] = 7;
  EXPECT_EQ(FindOrCreateArticulation(definition), 1);
  definition.host50[0] = 1;
  EXPECT_EQ(FindOrCreateArticulation(definition), 1);
  host.Set(kArticulation, 1000, Words(30));
  EXPECT_EQ(FindOrCreateArticulation({}), 1000);
  definition.words[24] = 8;
  for (const int number : {1001, 1002}) EXPECT_EQ(FindOrCreateArticulation(definition), number);
}

// The host's place drives the keys, the vector the number of elements; what stood behind them goes.
TEST(ChordSuffixes, AreFoundByTheirElementsAndStoredWhole) {
  DefinitionHost host;
  std::vector<EDTChordSuffix2012> a(2), b(3), none;
  a[1].words[7] = b[1].words[7] = 1;
  EXPECT_EQ(FindOrCreateChordSuffix(none), 1);
  for (int number = 1; auto* wanted : {&a, &b}) EXPECT_EQ(FindOrCreateChordSuffix(*wanted), number++);
  a[0].words[2] = 9;  // the word that does not count
  EXPECT_EQ(FindOrCreateChordSuffix(a), 1);
  a[0].words[3] = 9;
  EXPECT_EQ(FindOrCreateChordSuffix(a), 3);
  int number = 2;
  EXPECT_TRUE(sx_savechordsuffix(number, a) && sx_loadchordsuffix(2, b));
  EXPECT_EQ(b.size(), 2u);
  EXPECT_FALSE(sx_loadchordsuffix(4, b));
  EXPECT_TRUE(b.empty());
  EXPECT_EQ(host.Get(kSuffix, 3, 0), (Words{0, 0, 9, 9, 0, 0, 0, 0}));
}

// Every byte of a record in turn: whether it counts.
template <typename Record>
std::string Counting(bool (*equal)(Record, Record)) {
  std::string places;
  for (std::size_t i = 0; i < sizeof(Record); ++i) {
    Record a{}, b{};
    reinterpret_cast<unsigned char*>(&b)[i] = 1;
    places += equal(a, b) ? '-' : 'x';
  }
  return places;
}

TEST(DefinitionRecords, AreEqualByTheirFirstWords) {
  EXPECT_EQ(Counting(ChordEquals), "xxxxxx------------xx");
  EXPECT_EQ(Counting(InstDefEquals), "xxxxxxxx" + std::string(128, '-'));
  EXPECT_EQ(Counting(GenericEquals), std::string(12, 'x'));
}

TEST(EntryAttachments, AreStoredAndFlaggedWhateverTheHostSays) {
  DefinitionHost host;
  EXENTRY entry{};
  entry.number = 70001;
  entry.notes[1].identifier = -5;
  EXPECT_TRUE(ChangeNotehead(entry, 1, 0x11223344) && AddArticulation(entry, 4, 5, 6));
  EXPECT_EQ(host.Get(kNotehead, 70001), (Words{0xFFFB, 0, 0, 0x3344, 0x1122, 0, 0, 0, 0, 0}));
  host.Set(kNotehead, 70001, Words(10));
  host.Set(kNotehead, 70001, {0xFFFB, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 1);
  EXPECT_TRUE(ChangeNotehead(entry, 1, -1) && AddArticulation(entry, 0x8001, -2, 3));
  EXPECT_EQ(host.Get(kNotehead, 70001, 1), (Words{0xFFFB, 1, 2, 0xFFFF, 0xFFFF, 5, 6, 7, 8, 9}));
  EXPECT_EQ(host.Get(kAssignment, 70001, 1), (Words{0x8001, 0xFFFE, 0, 3, 0, 0}));
  host.refuse = [](const sok::HostCall&) { return true; };
  entry.flags = 1;
  EXPECT_FALSE(ChangeNotehead(entry, 0, 1) || AddArticulation(entry, 1, 1, 1));
  EXPECT_EQ(entry.flags + 0, 0x00600001u);
}

}  // namespace
