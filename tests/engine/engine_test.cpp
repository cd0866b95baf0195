// The engine bundle as an extension meets it: through the kit's wrappers.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "tests/support/shell.h"
#include "tests/support/test_host.h"

namespace {

using sok::FramePlace;

constexpr unsigned int kVersion = kInterfaceVersion;

EXENTRY Entry(int number, unsigned short duration, unsigned int flags = kEntryIsNote) {
  EXENTRY entry = {};
  entry.number = number;
  entry.duration = duration;
  entry.flags = flags;
  entry.noteCount = 1;
  return entry;
}

std::vector<int> Numbers(const std::vector<EXENTRY>& entries) {
  std::vector<int> numbers;
  for (const EXENTRY& entry : entries) numbers.push_back(int{entry.number});
  return numbers;
}

class Engine : public testing::Test {
 protected:
  Engine() {
    host.AddScore(3, 4);
    host.document.SetStaffList(7, {3, 1});
  }

  EXTGF2005a* Load(unsigned short list, short slot, short measure, short layer) {
    return SX_LoadTGF(list, slot, measure, layer, 1, kVersion);
  }

  TestHost host;
};

struct PlaceCase {
  unsigned short list;
  short slot, measure, layer;
  bool exists;
};
constexpr PlaceCase kPlaces[] = {
    {0, 1, 1, 0, true},  {0, 3, 4, 3, true},  {0, 0, 1, 0, false},  {0, 4, 1, 0, false}, {0, -1, 1, 0, false},
    {0, 1, 0, 0, false}, {0, 1, 5, 0, false}, {0, 1, -1, 0, false}, {0, 1, 1, 4, false}, {0, 1, 1, -1, false},
    {7, 2, 1, 0, true},  {7, 3, 1, 0, false}, {8, 1, 1, 0, false},
};

TEST_F(Engine, EveryExistingPlaceHasAFrameAndOnlyThose) {
  for (const PlaceCase& c : kPlaces) {
    SCOPED_TRACE(testing::Message() << "case " << &c - kPlaces);
    EXTGF2005a* const frame = Load(c.list, c.slot, c.measure, c.layer);
    ASSERT_EQ(frame != nullptr, c.exists);
    EXPECT_EQ(host.session.frames_held, c.exists ? 1 : 0);
    if (frame == nullptr) continue;
    EXPECT_EQ(frame->count, 0);
    EXPECT_TRUE(frame->entries == nullptr);
    EXPECT_EQ(SX_FreeTGF(frame, kVersion), 1);
    EXPECT_EQ(SX_FreeTGF(frame, kVersion), 0);  // a second time
  }
  EXPECT_EQ(SX_FreeTGF(nullptr, kVersion), 0);
}

TEST_F(Engine, MeasuresLastAsLongOnEveryStaffAsInTheScore) {
  host.document.AddMeasure(3072);
  for (const short inst : std::initializer_list<short>{0, 1, 3})
    EXPECT_EQ(SX_GetMeasureDuration(inst, 5, kVersion), 3072) << inst;
  for (const short inst : std::initializer_list<short>{-1, 4, 5})
    EXPECT_EQ(SX_GetMeasureDuration(inst, 3, kVersion), 0) << inst;
}

// A frame reached through a part's staff list stands for the same music as through the global one.
TEST_F(Engine, KeyWordsNameTheFrameWhateverListItWasReachedBy) {
  ASSERT_TRUE(host.document.SetEntries({1, 2, 0}, {Entry(10, 1024), Entry(11, 2048)}));
  EXTGF2005a* const loaded = Load(7, 2, 2, 0);
  ASSERT_EQ(loaded->count, 2);
  EXPECT_EQ(SX_GetTGFDuration(loaded, kVersion), 3072);
  EXTGF2005a emptied = {};
  std::copy(std::begin(loaded->key), std::end(loaded->key), emptied.key);
  EXPECT_EQ(SX_SaveTGF(&emptied, kVersion), 1);
  EXPECT_EQ(host.document.EntryCount({1, 2, 0}), 0);
  EXPECT_TRUE(host.document.dirty);

  // The loaded copy saved under another frame's key words, while the original is back in its place.
  EXPECT_EQ(SX_SaveTGF(loaded, kVersion), 1);
  EXTGF2005a* const target = Load(0, 3, 4, 1);
  std::copy(std::begin(target->key), std::end(target->key), loaded->key);
  EXPECT_EQ(SX_SaveTGF(loaded, kVersion), 1);
  EXPECT_EQ(Numbers(host.document.Entries({1, 2, 0})), (std::vector{10, 11}));
  EXPECT_EQ(Numbers(host.document.Entries({3, 4, 1})), (std::vector{12, 13}));  // numbers stay unique
  EXPECT_EQ(SX_FreeTGF(loaded, kVersion), 1);
  EXPECT_EQ(SX_FreeTGF(target, kVersion), 1);
  emptied.key[0] = 0;
  EXPECT_EQ(SX_SaveTGF(&emptied, kVersion), 0);  // no such place
}

TEST_F(Engine, InsertsAndDeletesWithinTheFrameOnly) {
  EXTGF2005a* const frame = Load(0, 1, 1, 0);
  for (const auto& [index, count] : {std::pair{-1, 1}, {1, 1}, {0, 0}, {0, -1}}) {
    EXPECT_EQ(SX_InsertEXENTRY(frame, static_cast<short>(index), static_cast<short>(count), kVersion), 0);
  }
  ASSERT_EQ(SX_InsertEXENTRY(frame, 0, 2, kVersion), 1);
  ASSERT_EQ(SX_InsertEXENTRY(frame, 1, 32765, kVersion), 1);
  EXPECT_EQ(SX_InsertEXENTRY(frame, 0, 1, kVersion), 0);  // full
  EXPECT_EQ(frame->entries[1].duration, 0);
  EXPECT_EQ(int{frame->entries[1].number}, 3);  // the first two numbers went to the ends
  EXPECT_EQ(int{frame->entries[32766].number}, 2);
  for (const auto& [index, count] : {std::pair{-1, 1}, {32766, 2}, {0, 0}, {32767, 1}}) {
    EXPECT_EQ(SX_DeleteEXENTRY(frame, static_cast<short>(index), static_cast<short>(count), kVersion), 0);
  }
  EXPECT_EQ(SX_DeleteEXENTRY(frame, 1, 32766, kVersion), 1);
  ASSERT_EQ(SX_InsertEXENTRY(frame, 1, 1, kVersion), 1);
  frame->entries[1].duration = 512;
  SX_ReduceEntries(frame, kVersion);
  ASSERT_EQ(frame->count, 1);
  EXPECT_EQ(frame->entries[0].duration, 512);
  EXPECT_EQ(SX_DeleteEXENTRY(frame, 0, 1, kVersion), 1);
  EXPECT_TRUE(frame->entries == nullptr);
  EXPECT_EQ(SX_FreeTGF(frame, kVersion), 1);
}

// What an extension may break: the engine refuses it and reads nothing beyond what it knows.
TEST_F(Engine, RefusesFramesThatDoNotHoldTogether) {
  host.document.SetEntries({1, 1, 0}, {Entry(1, 1024)});
  EXTGF2005a* const frame = Load(0, 1, 1, 0);
  EXTGF2005a foreign = {};
  foreign.key[0] = foreign.key[1] = 1;
  EXPECT_EQ(SX_InsertEXENTRY(&foreign, 0, 1, kVersion), 0);
  EXPECT_EQ(SX_SaveTGF(nullptr, kVersion), 0);
  EXPECT_EQ(SX_GetTGFDuration(nullptr, kVersion), 0);
  foreign.count = 1;  // without an array
  EXPECT_EQ(SX_SaveTGF(&foreign, kVersion), 0);
  frame->count = -1;
  EXPECT_EQ(SX_SaveTGF(frame, kVersion), 0);
  frame->count = 1;
  frame->entries[0].noteCount = 13;
  EXPECT_EQ(SX_SaveTGF(frame, kVersion), 0);
  EXPECT_EQ(host.document.Entries({1, 1, 0})[0].noteCount, 1);
}

// Frames that nobody set come from the source; a saved one no longer does, nor do the numbers it gave up.
TEST(Document, TakesUnsetFramesFromItsSource) {
  struct Source : sok::EntrySource {
    short Count(const FramePlace& place) const override { return place.layer == 0 ? 1 : 0; }
    void Fill(const FramePlace& place, EXENTRY* entries) const override { *entries = Entry(place.measure, 4096, 0); }
    int LastNumber() const override { return 2; }
    std::optional<Position> Find(int number) const override {
      if (number < 1 || number > 2) return std::nullopt;
      return Position{{1, static_cast<short>(number), 0}, 0};
    }
  } source;
  sok::Document document;
  document.AddStaff();
  for (int i = 0; i < 2; ++i) document.AddMeasure(3072);
  document.SetEntrySource(&source);
  EXPECT_EQ(Numbers(document.Entries({1, 2, 0})), std::vector{2});
  EXPECT_TRUE(document.SetEntries({1, 1, 1}, {Entry(1, 1024), Entry(0, 1024), Entry(9, 512), Entry(9, 512)}));
  EXPECT_EQ(Numbers(document.Entries({1, 1, 1})), (std::vector{3, 4, 9, 10}));  // 1 belongs to the source still
  EXPECT_TRUE(document.SetEntries({1, 1, 0}, {}));                              // it has moved
  EXPECT_EQ(Numbers(document.Entries({1, 1, 1})), (std::vector{1, 4, 9, 10}));
  EXPECT_TRUE(document.SetEntries({1, 1, 1}, {Entry(3, 1024)}));  // by the number that it had in between
  EXPECT_EQ(Numbers(document.Entries({1, 1, 1})), std::vector{1});
  EXPECT_EQ(document.FindEntry(1)->place, (FramePlace{1, 1, 1}));
  EXPECT_FALSE(document.FindEntry(9));
  std::vector<FramePlace> set;
  document.ForEachSetFrame([&](const FramePlace& place, auto) { set.push_back(place); });
  EXPECT_EQ(set, (std::vector<FramePlace>{{1, 1, 0}, {1, 1, 1}}));
}

TEST_F(Engine, CancellingAnEditTakesItsChangesBack) {
  const EDataID id = {};
  EXPECT_EQ(SX_StartSonkelEdit("outer", kVersion), 1);
  SX_SaveEData(0x6F743231, &id, "a", 1, kVersion);
  const unsigned short inner[] = {'i', 0};
  EXPECT_EQ(SX_StartSonkelEdit_UTF16(inner, kVersion), 1);
  SX_SaveEData(0x6F743231, &id, "bb", 2, kVersion);
  EXPECT_EQ(host.session.open_edits, (std::vector<std::string>{"outer", "i"}));
  SX_CancelSonkelEdit(kVersion);
  int size = 0;
  EXPECT_EQ(SX_LoadEData(0x6F743231, &id, nullptr, &size, kVersion), 1);
  EXPECT_EQ(size, 1);
  EXPECT_EQ(SX_EndSonkelEdit(kVersion), 1);
  EXPECT_TRUE(host.session.open_edits.empty());
}

TEST_F(Engine, ServesEntriesAndStaffSpecsAsRecords) {
  host.document.SetEntries({1, 1, 0}, {Entry(5, 1024), Entry(8, 2048)});
  EDataID id = {};
  EXENTRY record = {};
  EXPECT_EQ(SX_NextEData(0x65746545, &id, &record, 52, kVersion), 1);
  EXPECT_EQ(SX_NextEData(0x65746545, &id, &record, 52, kVersion), 1);
  EXPECT_EQ(id.entry.entryNum, 8);
  EXPECT_EQ(SX_NextEData(0x65746545, &id, &record, 52, kVersion), 0);
  record.number = 99;
  record.duration = 512;
  EXPECT_EQ(SX_SaveEData(0x65746545, &id, &record, 52, kVersion), 1);
  const std::vector<EXENTRY> entries = host.document.Entries({1, 1, 0});
  EXPECT_EQ(Numbers(entries), (std::vector{5, 8}));
  EXPECT_EQ(entries[1].duration, 512);
  id.entry.entryNum = 0x7FFFFFFF;
  EXPECT_EQ(SX_PreviousEData(0x65746545, &id, &record, 52, kVersion), 1);
  EXPECT_EQ(id.entry.entryNum, 8);

  id.other = {2, 0};
  SX_SaveEData(0x534F4953, &id, "spec", 4, kVersion);
  id.detail.cmper = 2;
  id.detail.secondCmper = 3;
  id.detail.extraValue = 1024;
  char spec[4] = {};
  int size = sizeof spec;
  EXPECT_EQ(SX_LoadEData(0x534F5343, &id, spec, &size, kVersion), 1);
  EXPECT_EQ(std::string(spec, 4), "spec");
}

TEST_F(Engine, ConvertsTextsBothWays) {
  host.document.AddFont("Times");
  host.document.AddFont("Café");
  host.document.AddPart("Flöte");
  const unsigned short cafe[] = {'C', 'a', 'f', 0xE9, 0};
  const unsigned short unpaired[] = {'a', 0xD800, 0xE9, 0xDC00, 0};
  EXPECT_EQ(SX_FontNameToNum("Caf\x8E", kVersion), 1);
  EXPECT_EQ(SX_FontNameToNum_UTF16(cafe, kVersion), 1);
  EXPECT_EQ(SX_FontNameToNum("Arial", kVersion), -1);
  char name[5] = "????";
  EXPECT_EQ(SX_FontNumToName(1, name, 4, kVersion), 1);
  EXPECT_STREQ(name, "Caf");  // cut, and terminated
  EXPECT_EQ(SX_FontNumToName(1, name, 5, kVersion), 1);
  EXPECT_STREQ(name, "Caf\x8E");
  EXPECT_EQ(SX_FontNumToName(2, name, 5, kVersion), 0);
  EXPECT_EQ(SX_FontNumToName(1, name, 0, kVersion), 0);
  EXPECT_STREQ(SX_GetPartName(1, kVersion), "Fl\x9Ate");
  EXPECT_EQ(SX_GetPartName_UTF16(1, kVersion)[2], 0xF6);
  EXPECT_TRUE(SX_GetPartName(2, kVersion) == nullptr);
  EXPECT_EQ(SX_GetNextPartID(0, kVersion), 1);
  EXPECT_EQ(SX_GetNextPartID(1, kVersion), -1);
  SX_AlertMessage(nullptr, 48, 0, "Caf\x8E", kVersion);
  SX_AlertMessage_UTF16(nullptr, 48, 0, cafe, kVersion);
  SX_AlertMessage_UTF16(nullptr, 48, 0, unpaired, kVersion);
  EXPECT_EQ(host.session.alerts, (std::vector<std::string>{"Café", "Café", "a?é?"}));
}

// A wrapper's own namesake or a helper that became visible would change what an extension binds to.
TEST(EngineBundle, ExportsNothingButHostEntryPoints) {
  std::set<std::string> known = {"SonkelEngineAttach"};
#define SX_ENTRY(result, name, parameters, arguments, fallback) known.insert(#name);
#define SX_CUSTOM(result, name, parameters, arguments) known.insert(#name);
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
  std::istringstream names(Shell("nm -D --defined-only --format=just-symbols " + Quoted(SOK_ENGINE_EXECUTABLE)).out);
  int exported = 0;
  for (std::string name; names >> name; ++exported) EXPECT_TRUE(known.contains(name)) << name;
  EXPECT_GT(exported, 40);
}

}  // namespace
