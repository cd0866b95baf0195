// The text of an entry's notes, changed to what a saved frame says of the entry, or written anew.
#pragma once

#include <string>
#include <vector>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/musicxml/reading/measure_items.h"
#include "host/musicxml/writing/note_style.h"

namespace sok {

// The finest divisions that are written, and the highest and lowest pitch: what the schema has octaves for.
inline constexpr std::int64_t kMostDivisions = 1'000'000;
inline constexpr int kLowestStep = -28;
inline constexpr int kHighestStep = 41;
inline constexpr int kMostAlteration = 3;

// One <note> of an entry.
struct NoteText {
  std::string text;
  int staff = 1;
  Pitch pitch;
  bool rest = false;
  bool fresh = false;  // its pitch is not what stood there
};

// What an entry's notes are made of: those that the score had, or nothing.
struct WrittenEntry {
  std::vector<NoteText> notes;
  EXENTRY entry{};  // as it was handed out
  Fraction length;
  bool grace = false;
  bool whole = false;    // it lasts a whole measure
  bool untyped = false;  // has no <type>
  bool placed = false;   // a rest that says where it stands
};

// What becomes of it.
struct EntryTarget {
  EXENTRY entry{};  // a rest stands where its record says with kEntryRestPlaced alone; ties are those to write
  bool whole = false;
  bool moves = false;    // to another voice, staff or measure: the next three are written
  std::string voice;     // escaped; empty: none
  int staff = 0;         // 0: none is written
  int home = 1;          // the staff, written or not
  std::string duration;  // what <duration> says; empty: it stays as it is
};

// Which of the source's notes each note of the entry is, -1 for a new one. The first of both are the same.
std::vector<int> MatchNotes(const EXENTRY& before, const EXENTRY& after);

// Whether the entry's length is not the source's any more: its value changed, or a whole measure's rest came or went.
bool ChangesValue(const WrittenEntry& source, const EntryTarget& target);

// The notes as they are to stand in the score. `indentation` is what new ones are laid out with. Throws Error.
std::vector<NoteText> WriteEntry(const WrittenEntry& source, const EntryTarget& target, const NoteStyle& style,
                                 std::string_view indentation);

// "sharp" for 1 …; empty for what has no name.
std::string_view AccidentalOf(int alter);

}  // namespace sok
