// What a score holds, as compact as the largest ones need: for every measure of every part the voices in it, for every
// voice its entries. No text and no parsed tree: byte offsets lead back to the text.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/musicxml/fraction.h"
#include "host/musicxml/score.h"

namespace sok {

// What one note of an entry sounds. A placed rest has one for where it stands, other rests have none.
struct Pitch {
  std::int16_t step = 0;  // diatonic steps from middle C
  std::int8_t alter = 0;  // semitones up
  std::uint8_t ties = 0;  // TieEnd bits
};

enum TieEnd : std::uint8_t { kTieStart = 1, kTieStop = 2 };

enum EntryFlag : std::uint8_t {
  kRest = 1,
  kBarRest = 2,  // <rest measure="yes"/>
  kUntyped = 4,  // no <type>: the duration is the sounding one
  kGrace = 8,
  kCue = 16,
  kHidden = 32,  // print-object="no"
  kFermata = 64,
  kPlaced = 128,  // a rest that says where on the staff it stands
};

struct Entry {
  std::uint16_t duration = 0;   // as written, 1024 a quarter note
  std::uint8_t note_count = 0;  // 1 to 12; 1 for a rest
  std::uint8_t flags = 0;
  std::uint32_t first_pitch = 0;  // index in Model::pitches
};

// A part has 1 to 64 staves.
constexpr std::uint64_t StaffBit(int staff) { return std::uint64_t{1} << (staff - 1); }

// The entries of one voice in one measure of one part.
struct VoiceMeasure {
  std::uint32_t first_entry = 0;
  std::uint32_t entry_count = 0;
  std::uint16_t voice = 0;  // index in Part::voices
  std::uint8_t home = 1;    // the staff of the part whose frames hold its entries in this measure
  std::uint8_t layer = 0;
  bool all_hidden = true;
  bool no_full_notes = true;      // cue notes and rests only
  std::uint64_t drawn_on = 0;     // staves on which something of it is printed, see StaffBit
  std::uint64_t fingerprint = 0;  // of all that counts in its notes, to compare two readings
  Fraction length;                // sounding length of the first entry
};

// One measure of one part: the <measure> of a partwise score, the <part> of a timewise one.
struct PartMeasure {
  std::size_t offset = 0;         // of its '<' in the text
  std::uint32_t size = 0;         // of its text
  std::uint32_t first_voice = 0;  // index in Part::cells
  std::uint32_t voice_count = 0;
  std::uint64_t fingerprint = 0;  // of what stands beside the notes, and where
  std::uint64_t names = 0;        // the same wherever it stands
  Fraction divisions;             // in force at its start
  std::int8_t fifths = 0;         // the key in force at its start: sharps, or flats below 0
  bool has_signs = false;         // directions, notations on notes, tuplets
};

// A staff that a voice lives on in some measures, and its layer there.
struct VoiceHome {
  int staff = 1;  // of the part
  short layer = 0;
  int first_measure = 0;  // where it lives there first, from 0
  bool surplus = false;   // shares its layer, as all had been given away
};

struct Voice {
  std::string name;   // the text of <voice>; empty: notes without one
  int key_staff = 0;  // part of the voice's identity where it has no name, else 0
  std::vector<VoiceHome> homes;

  const VoiceHome* HomeOn(int staff) const {
    for (const VoiceHome& home : homes) {
      if (home.staff == staff) return &home;
    }
    return nullptr;
  }
};

struct SignRange {
  enum Kind { kMultipleRest, kMeasureRepeat, kSlash } kind = kMultipleRest;
  int staff = 0;  // 0: all staves of the part
  int first = 0;  // measures, from 0
  int last = 0;
};

struct Part {
  std::string id;
  std::string name;
  std::string abbreviation;
  int staves = 1;
  short first_slot = 1;
  std::vector<Voice> voices;
  std::vector<PartMeasure> measures;
  std::vector<VoiceMeasure> cells;
  std::vector<SignRange> ranges;
  std::vector<int> clef_middles;  // [staff - 1]: steps of the middle line from middle C, by the staff's first clef
};

struct Model {
  std::string form;
  std::string head;  // the text without what its measures hold, until the data beside the music has been read
  ReadOptions options;
  std::vector<Part> parts;
  std::vector<Entry> entries;  // an entry's number is its index plus 1
  std::vector<Pitch> pitches;
  std::vector<Staff> staves;
  std::vector<Measure> measures;
  std::vector<Fraction> lengths;  // real lengths, by measure
  std::vector<Fraction> times;    // what the time signature says, by measure; 0: nothing
  std::vector<Warning> warnings;
  std::size_t first_note = 0;  // offset of the first <note>; 0: none

  const Staff& StaffAt(short slot) const { return staves[static_cast<std::size_t>(slot - 1)]; }
  const Part& PartOf(short slot) const { return parts[static_cast<std::size_t>(StaffAt(slot).part)]; }
  int StaffOf(short slot) const { return StaffAt(slot).staff; }
  bool Holds(short slot, short measure) const;                        // slot and measure exist
  const PartMeasure* PartMeasureOf(short slot, short measure) const;  // null: the part lacks the measure

  // Calls visit(const Voice&, const VoiceMeasure&) for every voice that has entries in a layer of a cell.
  template <typename Visitor>
  void ForEachVoice(short slot, short measure, short layer, Visitor&& visit) const {
    const PartMeasure* cell = PartMeasureOf(slot, measure);
    if (cell == nullptr) return;
    const Part& part = PartOf(slot);
    const int staff = StaffOf(slot);
    for (std::uint32_t i = 0; i < cell->voice_count; ++i) {
      const VoiceMeasure& voice = part.cells[cell->first_voice + i];
      if (voice.home == staff && voice.layer == layer) visit(part.voices[voice.voice], voice);
    }
  }

  // The only entry of a voice is a full rest: one that lasts 4096 in the host's terms.
  bool IsWholeRest(const VoiceMeasure& voice, short measure) const;
  bool IsHiddenRest(const VoiceMeasure& voice, short measure) const;  // the same, not printed
  // The voice's only entry is left out of the frame: a full rest that is not printed, when the options say so.
  bool IsLeftOut(const VoiceMeasure& voice, short measure) const;
  // Whether a layer of a cell is there for extensions: see ReadOptions for what keeps one back.
  bool HandsOut(short slot, short measure, short layer) const;
  // The voice that the staff's layer 0 has; null when nothing of the part belongs there.
  const Voice* FirstVoice(short slot) const;
};

// Gives every voice a layer on each staff that it lives on, and every staff its slot. Called once, after the notes are
// read.
void AssignLayers(Model& model);

LayerFacts FactsOf(const Model& model, short slot, short measure, short layer);
Surroundings AroundOf(const Model& model, short slot, short measure);

}  // namespace sok
