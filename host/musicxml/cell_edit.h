// Changes to the text of one measure of one part.
//
// Whole-measure rests go in as groups that leave the cursor where it was, and such groups go out as wholes: taking out
// what was put in gives the text of before, byte for byte. Where an element was turned into another one, a blank before
// the '>' of its end tag remembers it: "</note >" was a <forward>, "</voice >" in it was not there, "</measure >" was
// an empty-element tag.
#pragma once

#include <functional>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/musicxml/fraction.h"
#include "host/musicxml/note_style.h"

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
  bool own_voice = false;  // stands before music of its layer, and takes nobody's place
};

class CellEdit {
 public:
  // The measure begins at `offset` of the text; `divisions` are in force there. Text and style must outlive the edit.
  CellEdit(std::string_view text, std::size_t offset, const Fraction& divisions, const NoteStyle& style);

  // Which notes: by the name of their voice and the staff they are on.
  using Selector = std::function<bool(const std::string& voice, int staff)>;

  // Takes out all notes of the voice.
  void Remove(const Selector& selects);
  void Insert(const NewRest& rest);
  // Gives articulations (names of elements) to one of the voice's notes, by its number among them; chords count once.
  // Those that the note has already are passed over. Once for each note.
  void Articulate(const Selector& selects, std::size_t index, const std::vector<std::string>& articulations);
  // What hangs on the voice's notes beside the notes themselves, by element name; "fermata" first.
  std::vector<std::string> Attached(const Selector& selects) const;
  // Puts the fermatas of the voice's notes on the right barline, where it has none of their kind yet.
  void MoveFermatas(const Selector& selects);

  // By offset.
  std::vector<Splice> Splices() const;

 private:
  enum class Kind {
    kNote,
    kBackup,
    kForward,
    kPlaced,    // stands where the cursor is
    kStanding,  // stands where it stands: barlines, layout
  };
  struct Item {
    Kind kind = Kind::kStanding;
    std::size_t begin = 0;
    std::size_t end = 0;
    pugi::xml_node node;  // null: added
    Fraction length;
    Fraction divisions;  // in force behind it
    Fraction before;     // cursor before and after
    Fraction after;
    std::string voice;
    int staff = 1;
    bool chord = false;
    bool gone = false;
    std::string replacement;  // an added item's text, or what another one becomes
  };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::string_view TextOf(pugi::xml_node node) const;
  std::size_t BeginOf(pugi::xml_node node) const;
  void ReadItem(pugi::xml_node node, Fraction& divisions);
  static bool MovesCursor(const Item& item);
  void Walk();
  std::size_t Neighbour(std::size_t index, int step, bool cursor_only) const;
  std::size_t LastMover() const;
  bool NeededLater(std::size_t index) const;
  void RemoveNote(std::size_t index, bool lone);
  bool RemoveGroup(std::size_t index);
  bool RestoreForward(Item& item) const;
  bool TakeForwardsPlace(const NewRest& rest);
  std::string AsRest(const Item& forward, const NewRest& rest) const;
  std::string Duration(const Fraction& length, const Fraction& divisions, Fraction& written) const;
  std::string_view IndentationAt(std::size_t index) const;
  void Add(std::size_t index, Kind kind, const Fraction& length, const std::vector<std::string>& children);
  std::string Added() const;

  std::string_view text_;
  std::size_t offset_;
  Fraction divisions_;
  const NoteStyle& style_;
  pugi::xml_document document_;
  std::size_t end_ = 0;
  std::size_t content_ = 0;  // behind the start tag
  bool empty_tag_ = false;
  std::vector<Item> items_;
  std::set<std::string> fermatas_moved_;  // their types
};

}  // namespace sok
