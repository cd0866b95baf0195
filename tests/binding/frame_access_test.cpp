// Frames: what tidying makes of the entries, when it runs, and the counter of frames held.
#include "SokExtShared/SokEDK/Source/sonkelpdk/frame_access.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

#include "tests/support/recording_engine.h"

namespace {

struct Note {
  int identifier;
  unsigned int flags = 0;
  bool operator==(const Note&) const = default;
};

// A frame of one entry.
struct FrameOf : EXTGF2005a {
  explicit FrameOf(const std::vector<Note>& note_list) {
    entries = new EXENTRY[1]{};
    count = 1;
    std::memset(entries->notes, 0x5A, sizeof entries->notes);  // stale slots
    entries->noteCount = static_cast<short>(note_list.size());
    for (std::size_t i = 0; i < note_list.size() && i < 12; ++i) {
      entries->notes[i].identifier = static_cast<short>(note_list[i].identifier);
      entries->notes[i].flags = note_list[i].flags;
    }
  }
};

std::vector<Note> NotesOf(const EXENTRY& entry) {
  std::vector<Note> notes;
  for (int i = 0; i < std::min<int>(entry.noteCount, 12); ++i) {
    const unsigned int flags = entry.notes[i].flags;
    notes.push_back({entry.notes[i].identifier, flags});
  }
  return notes;
}

struct TidyCase {
  const char* name;
  std::vector<Note> before;
  std::vector<Note> after;
};

const TidyCase kTidyCases[] = {
    {"the earlier of two equal ones is renumbered, a fresh one comes above the largest",
     {{3}, {0}, {3}},
     {{4, 0x40000}, {5, 0x50000}, {3, 0x30000}}},
    {"of three equal ones the last keeps its number", {{2}, {2}, {2}}, {{3, 0x30000}, {4, 0x40000}, {2, 0x20000}}},
    {"only five bits are mirrored, other bits stay", {{33, 0xFFFFFFFF}}, {{33, 0xFFE1FFFF}}},
    {"a negative one counts for nothing but stays", {{-1}, {0}}, {{-1, 0x1F0000}, {1, 0x10000}}},
    {"equal negative ones", {{-5}, {-5}}, {{1, 0x10000}, {-5, 0x1B0000}}},
    {"beyond the largest number", {{0x7FFF}, {0}}, {{0x7FFF, 0x1F0000}, {-0x8000, 0}}},
};

TEST(FrameAccess, TidyingGivesUniqueIdentifiers) {
  for (const TidyCase& c : kTidyCases) {
    SCOPED_TRACE(c.name);
    FrameOf frame(c.before);
    SX_SaveTGF(&frame, kInterfaceVersion);
    EXPECT_EQ(NotesOf(frame.entries[0]), c.after);
    const EXNOTE zero{};
    for (std::size_t i = c.before.size(); i < 12; ++i) {
      EXPECT_EQ(std::memcmp(&frame.entries[0].notes[i], &zero, sizeof zero), 0) << "slot " << i;
    }
  }
}

TEST(FrameAccess, RestsGetANoteRecordWhoseIdentifierComesAtTheNextTidying) {
  FrameOf frame({});
  SX_SaveTGF(&frame, kInterfaceVersion);
  EXPECT_EQ(NotesOf(frame.entries[0]), (std::vector<Note>{{0, 0x80000000}}));
  EXPECT_EQ(static_cast<unsigned int>(frame.entries[0].flags), 0x01000000u);
  SX_SaveTGF(&frame, kInterfaceVersion);
  EXPECT_EQ(NotesOf(frame.entries[0]), (std::vector<Note>{{1, 0x80010000}}));

  CanAddNoteRecordToRests = false;
  FrameOf bare({});
  SX_SaveTGF(&bare, kInterfaceVersion);
  EXPECT_EQ(bare.entries[0].noteCount, 0);
  EXPECT_EQ(bare.entries[0].notes[0].identifier, 0);
}

TEST(FrameAccess, OddCountsAreHeldToTheTwelveSlots) {
  for (const int notes : {12, 13, 300, -1, -300}) {
    FrameOf frame({});
    frame.entries[0].noteCount = static_cast<short>(notes);
    SX_SaveTGF(&frame, kInterfaceVersion);
    EXPECT_EQ(frame.entries[0].noteCount, notes);
    EXPECT_EQ(frame.entries[0].notes[11].first, notes > 0 ? 0x5A5A : 0) << notes;
    EXPECT_EQ(frame.entries[0].host136[0], 0);
  }
  for (const int count : {0, -1}) {
    FrameOf frame(std::vector<Note>{{0}});
    frame.count = static_cast<short>(count);
    SX_SaveTGF(&frame, kInterfaceVersion);
    EXPECT_EQ(frame.entries[0].notes[0].identifier, 0) << "not touched";
  }
  EXTGF2005a empty{};
  empty.count = 3;
  EXPECT_EQ(SX_SaveTGF(&empty, kInterfaceVersion), 0);
  EXPECT_EQ(SX_SaveTGF(nullptr, kInterfaceVersion), 0);
}

// Every call that hands a changed frame over tidies it before the host sees it; loading and freeing do not.
TEST(FrameAccess, EveryCallThatHandsAFrameOverTidiesIt) {
  RecordingEngine engine;
  using Call = void (*)(EXTGF2005a*);
  struct {
    Call call;
    bool tidies;
  } const calls[] = {
      {[](EXTGF2005a* frame) { SX_SaveTGF(frame, kInterfaceVersion); }, true},
      {[](EXTGF2005a* frame) { SX_InsertEXENTRY(frame, 0, 1, kInterfaceVersion); }, true},
      {[](EXTGF2005a* frame) { SX_DeleteEXENTRY(frame, 0, 1, kInterfaceVersion); }, true},
      {[](EXTGF2005a* frame) { SX_ReduceEntries(frame, kInterfaceVersion); }, true},
      {[](EXTGF2005a* frame) { SX_GetTGFDuration(frame, kInterfaceVersion); }, false},
      {[](EXTGF2005a* frame) { SX_FreeTGF(frame, kInterfaceVersion); }, false},
  };
  for (const auto& c : calls) {
    FrameOf frame(std::vector<Note>{{0}});
    c.call(&frame);
    EXPECT_EQ(frame.entries[0].notes[0].identifier, c.tidies ? 1 : 0) << engine.last().name;
  }
}

TEST(FrameAccess, LoadsAndFreesAreCountedWhateverTheHostDoes) {
  EXPECT_EQ(SX_LoadTGF(0, 1, 1, 0, 1, kInterfaceVersion), nullptr);
  EXPECT_EQ(LoadedTGFCounter, 1);
  EXPECT_EQ(SX_LoadTGF(0, 1, 1, 0, 1, kInterfaceVersion), nullptr);
  EXPECT_EQ(LoadedTGFCounter, 2);
  for (const int expected : {1, 0, -1}) {
    EXPECT_EQ(SX_FreeTGF(nullptr, kInterfaceVersion), 0);
    EXPECT_EQ(LoadedTGFCounter, expected);
  }
}

// The leak and address checkers watch the two arrays go, each once, also empty ones.
TEST(FrameAccess, AFrameReleasesBothItsArrays) {
  static_assert(!std::is_copy_constructible_v<EXTGF2005a> && !std::is_copy_assignable_v<EXTGF2005a>);
  alignas(EXTGF2005a) unsigned char memory[sizeof(EXTGF2005a)];
  std::memset(memory, 0x5A, sizeof memory);
  EXTGF2005a* const frame = new (memory) EXTGF2005a;
  EXPECT_TRUE(frame->entries == nullptr && frame->second == nullptr);
  frame->entries = new EXENTRY[3]{};
  frame->second = new EXHOSTDATA[0]{};
  frame->~EXTGF2005a();
  std::make_unique<EXTGF2005a>();
}

}  // namespace
