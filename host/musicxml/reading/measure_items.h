// The parts of one measure of one part: what every element in it is, how long it lasts and where it stands in time.
//
// This is the only place where a measure's text is understood. Reading makes the model of it, patching changes the text
// between its offsets.
#pragma once

#include <cstring>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "host/musicxml/fraction.h"
#include "host/musicxml/limits.h"
#include "host/musicxml/model.h"

namespace sok {

// Nothing is unescaped, joined or normalised that is not looked at; the text of an element without children is the
// element's own value, which makes the tree half as large.
inline constexpr unsigned int kMusicOnly = pugi::parse_escapes | pugi::parse_embed_pcdata;

enum class ItemKind : std::uint8_t {
  kNote,
  kBackup,
  kForward,
  kPlaced,    // stands where the cursor is
  kStanding,  // stands where it stands: barlines, layout
};

struct Item {
  ItemKind kind = ItemKind::kStanding;
  bool chord = false;  // sounds with the note before it
  bool has_notations = false;
  bool in_tuplet = false;
  int staff = 1;       // of a note
  int key_staff = 0;   // a part of the voice's identity where it has no name, else 0; a chord's are its first note's
  Entry entry;         // of a note, as if it were alone; its pitch number means nothing
  Pitch pitch;         // of a note; of a placed rest its step alone
  Fraction length;     // of a note, <backup> or <forward>
  Fraction divisions;  // in force behind it
  Fraction before;     // cursor
  Fraction after;
  pugi::xml_node node;
  std::size_t begin = 0;   // of its '<' in the text
  std::string_view voice;  // its name, without blanks; empty: none

  bool MovesCursor() const { return kind < ItemKind::kPlaced; }
};

// A place that is not as it should be, and what was made of it.
struct ItemProblem {
  pugi::xml_node node;
  std::string_view text;
};

struct MeasureItems {
  std::vector<Item> items;
  std::vector<ItemProblem> problems;
  Fraction divisions{1, 1};  // in force behind the last item
  Fraction furthest;         // how far the cursor ever got

  // Takes the place of what was read before; `divisions` must be set. The tree must outlive the items; `base` is where
  // it begins in the text.
  void Read(pugi::xml_node measure, std::size_t base);

 private:
  void ReadItem(pugi::xml_node node, std::size_t base);
  void ReadNote(Item& item);
  void Move(Item& item);
  Fraction LengthOf(pugi::xml_node node, std::string_view count, std::string_view problem);

  bool has_head_ = false;  // a <chord/> note has a note to join
  std::size_t head_index_ = 0;
  Fraction cursor_;
};

// By type and dots, 1024 a quarter note, at most what 16 bits hold; 0 for an unknown type.
int WrittenDuration(std::string_view type, int dots);
// The type and the dots of a written duration; an empty name when there are none.
struct NoteValue {
  std::string_view type;
  int dots = 0;
};
NoteValue ValueOf(int duration);

// What a <staff> says; 0: no staff has this number.
int StaffNumber(pugi::xml_node staff);

// A whole number as short texts hold it; 0 for what is none or a huge one.
int SmallNumber(std::string_view text);
inline bool Is(const char* name, const char* other) { return *name == *other && std::strcmp(name, other) == 0; }

}  // namespace sok
