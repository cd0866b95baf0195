// Changes to the text of one measure of one part: what comes and goes between its elements, and what becomes of the
// cursor.
//
// Whole-measure rests go in as groups that leave the cursor where it was, and such groups go out as wholes: taking out
// what was put in gives the text of before, byte for byte.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/musicxml/reading/open_measure.h"
#include "host/musicxml/writing/note_style.h"
#include "host/musicxml/writing/note_text.h"

namespace sok {

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

  static EntryRange Of(const VoiceMeasure& voice) {
    return {static_cast<int>(voice.first_entry + 1), static_cast<int>(voice.first_entry + voice.entry_count + 1)};
  }
  bool Holds(int entry) const { return entry >= first && entry < end; }
};

// One entry of a voice as it is to be written. Without a source it is new.
struct PlannedEntry {
  EXENTRY entry{};
  int source = 0;                          // number of the entry whose text it takes; 0: none
  WrittenEntry from;                       // of an entry that comes from elsewhere
  bool whole = false;                      // lasts the whole measure
  Fraction measure;                        // how long that is
  std::vector<std::string> articulations;  // that come to it, as names of elements
};

// All entries of one voice of the measure.
struct VoicePlan {
  const Change* change = nullptr;
  std::string voice;  // empty: none is written
  int key_staff = 0;  // of a voice without a name
  int home = 1;       // the staff that its new notes stand on
  int staff = 0;      // the same when staves are written, else 0
  EntryRange before;  // those that it had
  std::vector<PlannedEntry> entries;
};

// Takes one end of a tie from a note.
void UntieText(std::string& text, TieEnd end);

class MeasurePatch {
 public:
  // Text and style must outlive the patch.
  MeasurePatch(const Model& model, std::string_view text, int part, short measure, const NoteStyle& style);

  // Takes out all notes of the voices.
  void Remove(const std::vector<EntryRange>& voices);
  void Insert(const NewRest& rest);
  // Gives a voice the entries of a plan. Those that it had and that did not change keep their bytes. After the last one
  // Settle() lays the moves anew where time has changed. Both throw Error.
  void Relay(const VoicePlan& plan);
  void Settle();
  // The text of an entry, as it stands.
  WrittenEntry SourceOf(int entry) const;
  // Takes an end of a tie from a note of an entry.
  void Untie(int entry, std::size_t note, TieEnd end);
  // Shows the accidentals that notes need by now. Settle() does it, too.
  void MendAccidentals();
  void Show(const EntryRange& voice);  // a hidden rest is printed again
  // What hangs on the voice's notes beside the notes themselves, by element name; "fermata" first.
  std::vector<std::string> Attached(const EntryRange& voice) const;
  // Puts the fermatas of the voice's notes on the right barline, where it has none of their kind yet.
  void MoveFermatas(const EntryRange& voice);

  // Puts the measure's text as it is now behind another one.
  void AppendTo(std::string& text) const;

 private:
  // An element of the measure, as it is or as it is to be.
  struct Piece {
    ItemKind kind = ItemKind::kStanding;
    const Item* item = nullptr;  // null: added
    std::size_t end = 0;         // of the item's text
    int entry = 0;               // number of a note's entry, while it stands where it was
    NoteText note;               // what it is now, where it was written
    bool written = false;        // `note` says what it is
    bool relaid = false;         // of a voice that was relaid
    bool untied = false;         // does not sound on from the note before any more
    Fraction target;             // where an entry that was relaid is to begin
    bool chord = false;
    bool gone = false;
    std::string text;  // an added piece's, or what another one becomes
    Fraction length;
    Fraction divisions;  // in force behind it
    Fraction before;     // cursor before and after
    Fraction after;

    bool MovesCursor() const { return kind < ItemKind::kPlaced; }
    // Of a note: whether it sounded in the text that was read, and whether it does now.
    bool Sounded() const { return item != nullptr && (item->entry.flags & kRest) == 0; }
    bool Sounds() const { return !gone && (written ? !note.rest : Sounded()); }
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::string_view TextOf(const Piece& piece) const;  // as long as the piece stays what it is
  void Walk();
  std::size_t Neighbour(std::size_t index, int step, bool cursor_only) const;
  std::size_t LastMover() const { return Neighbour(pieces_.size(), -1, true); }
  bool NeededLater(std::size_t index) const;
  void RemoveNote(std::size_t index);
  // A rest with the <backup> behind it, in front of it, or with both.
  enum class Group { kBetweenMoves, kAndBack, kBackAnd };
  bool RemoveGroup(std::size_t index, Group group);
  std::size_t WaitingForward(const NewRest& rest) const;
  std::size_t BeforeLowerStaves(int staff) const;
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

  // Relaying: see measure_relay.cpp.
  struct Relaid;
  struct Sounding;
  using Additions = std::vector<std::vector<Piece>>;  // by the piece that they stand in front of
  static constexpr int kNoAccidental = 100;
  Relaid MatchHeads(const VoicePlan& plan);
  EntryTarget TargetOf(const VoicePlan& plan, const PlannedEntry& planned, const Fraction& divisions, Fraction& length,
                       Fraction& finer) const;
  Fraction WriteAt(std::size_t& at, const VoicePlan& plan, const PlannedEntry& planned, bool stays,
                   const Fraction& onset, Additions& added);
  void WriteInPlace(std::size_t head, const PlannedEntry& planned, std::vector<NoteText> notes, Additions& added);
  Piece AddedNote(const NoteText& note, std::size_t at, bool chord) const;
  Piece AddedDivisions(const Fraction& divisions, std::size_t at) const;
  std::size_t ChordEnd(std::size_t head) const;
  std::size_t NthNote(std::size_t head, std::size_t end, int n) const;
  std::size_t PlaceOfNewVoice(int staff) const;
  void MendGroups(const Relaid& old);
  void Merge(Additions added);
  bool InRelaidStream(std::size_t index) const;
  bool IsGapOfRelaid(std::size_t index) const;
  const Fraction* PlaceNeeded(std::size_t index) const;
  void LayMove(Additions& added, std::size_t at, std::size_t owed, const Fraction& from, const Fraction& to);
  void LayMoves();
  void JoinDivisions();
  int Fifths() const;
  std::map<std::size_t, int> Implied(std::vector<Sounding> notes) const;
  void ShowAccidental(Piece& piece, int alter) const;
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
