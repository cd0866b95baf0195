// Reads one measure of one part after the other into the model.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/musicxml/model.h"
#include "host/musicxml/reading/measure_items.h"
#include "host/musicxml/text/markup.h"

namespace sok {

// What holds from one measure of a part to the next.
struct PartState {
  Fraction divisions{1, 1};
  Fraction time{0, 1};  // length of a measure by the time signature; 0: none
  int fifths = 0;
  std::unordered_map<std::string, std::uint16_t> voices;
  std::vector<std::uint32_t> open_voices;  // by voice: its place among those of the measure at hand, plus 1
  std::vector<SignRange> open;             // measure repeats and slashes that have not ended
  std::uint32_t clefs_known = 0;
};

class MeasureReader {
 public:
  MeasureReader(Model& model, const LineTable& lines) : model_(model), lines_(lines) {}

  // Appends the measure to the part. The part's measures come in order. `base` is where the tree of the cell begins in
  // the text, `size` how long the cell is there.
  void Read(int part, PartState& state, pugi::xml_node cell, std::size_t base, std::size_t size);
  void EndPart(int part, PartState& state);

 private:
  // One voice of the measure at hand, before its entries join the model's.
  struct OpenVoice {
    VoiceMeasure cell;
    std::vector<Entry> entries;
    std::vector<Pitch> pitches;
    std::vector<std::uint32_t> notes_on;  // [staff - 1]: notes that are no rests
    std::vector<std::uint32_t> rests_on;
  };

  std::size_t OffsetOf(pugi::xml_node node) const { return base_ + static_cast<std::size_t>(node.offset_debug()) - 1; }
  void Warn(pugi::xml_node node, std::string_view text);
  void AddNote(const Item& note);
  void AddToEntry(const Item& note, const Fraction& onset, OpenVoice& voice);
  void AddBeside(const Item& item, PartMeasure& cell) const;
  std::uint16_t VoiceNumber(const Item& note);
  OpenVoice& VoiceFor(const Item& note);
  int HomeOf(const OpenVoice& voice) const;
  void ReadAttributes(pugi::xml_node node);
  void ReadStyle(pugi::xml_node style);
  void ReadClef(pugi::xml_node clef);
  void ReadTime(pugi::xml_node time);
  void Finish(PartMeasure& cell);

  Model& model_;
  const LineTable& lines_;

  std::size_t base_ = 0;
  Part* part_ = nullptr;
  PartState* state_ = nullptr;
  MeasureItems measure_;
  Fraction onset_;              // of the last entry
  std::size_t open_count_ = 0;  // the first of open_ are in use
  std::vector<OpenVoice> open_;
  OpenVoice* last_ = nullptr;  // whose last entry a <chord/> note joins
};

}  // namespace sok
