// Changes to the text of one measure of one part: what comes and goes between its elements, and what becomes of the
// cursor.
//
// Whole-measure rests go in as groups that leave the cursor where it was, and such groups go out as wholes: taking out
// what was put in gives the text of before, byte for byte.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/musicxml/note_style.h"
#include "host/musicxml/open_measure.h"

namespace sok {

// text[begin, end) becomes `replacement`.
struct Splice {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string replacement;
};

struct NewRest {
  std::string voice;  // empty: none is written
  int staff = 0;      // 0: none is written
  Fraction length;
  bool own_voice = false;  // stands before music of its layer, and not where time passes for it
};

// The entries of one voice of the measure, by number: from `first` to before `end`.
struct EntryRange {
  int first = 0;
  int end = 0;

  static EntryRange Of(const VoiceCell& voice) {
    return {static_cast<int>(voice.first_entry + 1), static_cast<int>(voice.first_entry + voice.entries + 1)};
  }
  bool Holds(int entry) const { return entry >= first && entry < end; }
};

class MeasurePatch {
 public:
  // Text and style must outlive the patch.
  MeasurePatch(const Model& model, std::string_view text, int part, short measure, const NoteStyle& style);

  // Takes out all notes of the voices.
  void Remove(const std::vector<EntryRange>& voices);
  void Insert(const NewRest& rest);
  void Show(const EntryRange& voice);  // a hidden rest is printed again
  // Gives articulations (names of elements) to an entry; those that it has already are passed over.
  void Articulate(int entry, const std::vector<std::string>& articulations);
  // What hangs on the voice's notes beside the notes themselves, by element name; "fermata" first.
  std::vector<std::string> Attached(const EntryRange& voice) const;
  // Puts the fermatas of the voice's notes on the right barline, where it has none of their kind yet.
  void MoveFermatas(const EntryRange& voice);

  // By offset.
  std::vector<Splice> Splices() const;

 private:
  // An element of the measure, as it is or as it is to be.
  struct Piece {
    ItemKind kind = ItemKind::kStanding;
    const Item* item = nullptr;  // null: added
    int entry = 0;               // number of a note's entry
    bool chord = false;
    bool gone = false;
    std::string text;  // an added piece's, or what another one becomes
    Fraction length;
    Fraction divisions;  // in force behind it
    Fraction before;     // cursor before and after
    Fraction after;

    bool MovesCursor() const { return kind < ItemKind::kPlaced; }
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::size_t EndOf(const Piece& piece) const;
  std::string TextOf(const Piece& piece) const;
  void Walk();
  std::size_t Neighbour(std::size_t index, int step, bool cursor_only) const;
  std::size_t LastMover() const { return Neighbour(pieces_.size(), -1, true); }
  bool NeededLater(std::size_t index) const;
  void RemoveNote(std::size_t index);
  // A rest with the <backup> behind it, in front of it, or with both.
  enum class Group { kBetweenMoves, kAndBack, kBackAnd };
  bool RemoveGroup(std::size_t index, Group group);
  std::size_t WaitingForward(const NewRest& rest) const;
  std::size_t BeforeLowerStaves(const NewRest& rest) const;
  std::size_t EndOfMeasure() const;
  void InsertAtStart(std::size_t index, const NewRest& rest);
  void InsertAtEnd(const NewRest& rest);
  static std::vector<std::string> RestParts(const NewRest& rest, const std::string& duration);
  void MoveFermata(const std::string& fermata);
  Fraction DivisionsAt(std::size_t index) const;
  std::string_view IndentationAt(std::size_t index) const;
  void Add(std::size_t index, ItemKind kind, const Fraction& length, const std::string& name,
           const std::vector<std::string>& children);
  void AddMove(std::size_t index, const Fraction& from, const Fraction& to);
  std::string Added() const;
  bool NothingLeft() const;

  const OpenMeasure measure_;
  std::string_view text_;
  const NoteStyle& style_;
  std::size_t content_ = 0;  // behind the start tag
  Fraction length_;          // of the measure
  std::vector<Piece> pieces_;
  std::set<std::string> fermatas_moved_;  // their types
};

}  // namespace sok
