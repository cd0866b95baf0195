// A MusicXML score as a document of the workbench, and the way back.
//
// A score is read into a Document (frames, measures, staves, the records that the commands ask for). Its text is kept,
// and is written back patched: only the cells (one staff in one measure) whose frames differ from what was read are
// touched, and in those only what changed; everything else stays byte for byte. What a frame says of its music, and
// what can be written, stands in docs/music-in-frames.md.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sok {

class Document;

// What a lone full rest is that is not printed.
enum class HiddenRests : unsigned char {
  kEntry,  // an entry like any other
  kKeep,   // its layer is not there for extensions, so that nothing clears it or fills beside it
  kEmpty,  // nothing; a whole-measure rest that comes to its staff shows it instead of adding another
};

struct ReadOptions {
  HiddenRests hidden_rests = HiddenRests::kEntry;
  // On a staff-measure where another staff's voice is drawn, layers without entries of their own are there, too.
  bool fill_visited = true;
  unsigned layers = (1U << 4) - 1;  // bit n: layer n is there for extensions
  // Fills in the records that extensions may ask for beside the music: preferences, texts, shapes. Plain fill and clear
  // runs do without.
  bool document_data = false;
};

struct WriteOptions {
  // A fermata on a rest that goes moves to the right barline of its measure.
  bool keep_fermatas = false;
};

// One staff of the score: one slot of the document's global staff list, in score order.
struct Staff {
  std::string part_id;
  std::string part_name;     // as displayed, without line breaks; the id when the part has no name
  std::string abbreviation;  // may be empty
  int part = 0;              // index of the part, from 0
  int staff = 1;             // its number in the part, from 1
  int part_staves = 1;       // how many staves the part has
  short instrument = 0;      // its number in the document
};

// One measure of the score, by position.
struct Measure {
  std::string number;           // as printed; may be empty, repeated, or no number at all
  int duration = 0;             // 1024 a quarter note
  bool implicit = false;        // not counted: an upbeat, the rest of a split measure
  bool length_assumed = false;  // nothing in the measure told its length; the time signature did, or 4 quarters
};

// What messages call a measure, by position from 1: "measure 12 (printed 11)". A measure that is read on its own has no
// printed number.
std::string MeasureLabel(const std::vector<Measure>& measures, std::size_t position);

// Signs that a changed measure of a staff may lie inside of.
struct Surroundings {
  bool multiple_rest = false;   // several measures drawn as one rest
  bool measure_repeat = false;  // drawn as a repeat of the measure before
  bool slash = false;           // drawn as slashes
  bool visited = false;         // notes that live on another staff are drawn here
};

// What a layer of a cell held when the score was read.
struct LayerFacts {
  std::string voice;             // the voice number in the score; empty when it has none
  int entry_count = 0;           // in the frame
  bool whole_rest = false;       // its only entry is a rest of duration 4096
  bool looks_whole = false;      // its only entry is a rest as long as the measure, but of another duration
  bool bar_rest_beside = false;  // holds a measure="yes" rest beside other entries
  bool hidden = false;           // none of its notes is printed
  bool hidden_rest = false;      // a lone full rest that is not printed (no entry when hidden rests count as empty)
  bool grace = false;            // holds grace notes
  bool cue = false;              // holds nothing but cue notes and rests
  bool surplus = false;          // more voices than layers: several voices share this layer here
  bool cross_staff = false;      // some of its notes are drawn on another staff
  bool fermata = false;          // its lone rest carries a fermata
};

struct Warning {
  int line = 0;  // 0: the whole score
  std::string text;
};

enum class ChangeKind {
  kFilled,   // a whole-measure rest went in
  kCleared,  // every entry of the layer went out
  kOther,    // entries were changed in another way
};

// One layer of one cell whose frame is not what was read. Slots and measures count from 1, layers from 0.
struct Change {
  short slot = 0;
  short measure = 0;
  short layer = 0;
  ChangeKind kind = ChangeKind::kOther;
};

class Score {
 public:
  // Reads a score from the bytes of a file: plain XML or a zip (.mxl), whatever its name. `name` stands in messages.
  // Throws Error; no bytes, however odd, make it do anything else.
  static std::unique_ptr<Score> Read(std::string bytes, std::string name, const ReadOptions& options = {});
  ~Score();
  Score(const Score&) = delete;
  Score& operator=(const Score&) = delete;

  Document& document();
  const Document& document() const;

  // By slot and by position, both from 0 here: staves()[0] is slot 1, measures()[0] is measure 1.
  const std::vector<Staff>& staves() const;
  const std::vector<Measure>& measures() const;
  // In the order of the text.
  const std::vector<Warning>& warnings() const;
  // "score-partwise" or "score-timewise"; the encoding's name; whether the file is a zip, and the member read.
  std::string_view form() const;
  std::string_view encoding() const;
  std::string_view member() const;  // empty: not a zip

  // Facts of a cell as it was read. Slots and measures from 1, layers from 0.
  LayerFacts Facts(short slot, short measure, short layer) const;
  Surroundings Around(short slot, short measure) const;
  // Whether the part of this slot has this measure at all: scores exist whose parts differ in length.
  bool Exists(short slot, short measure) const;
  // Layers that hold something on this staff and whose notes are all hidden wherever they hold something.
  bool LayerWhollyHidden(short slot, short layer) const;

  // The layers whose frames differ from what was read, by measure, slot and layer.
  std::vector<Change> Changes() const;
  // What happened to the entries of such a layer, in words: "2 values changed, 1 entry in"; of kOther alone.
  std::string Edits(const Change& change) const;
  // What hung on those that are gone: "fermata", "dynamics" …
  std::vector<std::string> Lost(const Change& change) const;

  // The file with the changes in place: for a zip the whole zip. Without changes these are the bytes that were read.
  // The result is read again before it is handed out. Throws Error when a change cannot be written (the message
  // names the place), or when anything beside the changed cells came out different.
  std::string Write(const WriteOptions& options = {}) const;
  // The text of the score in UTF-8 before and after, for a comparison by lines.
  const std::string& Text() const;
  std::string WriteText(const WriteOptions& options = {}) const;

 private:
  struct Impl;
  explicit Score(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

}  // namespace sok
