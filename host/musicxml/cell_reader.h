// Reads one measure of one part after the other.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/musicxml/markup.h"
#include "host/musicxml/model.h"
#include "host/musicxml/reader.h"

namespace sok {

// What holds from one measure of a part to the next.
struct PartState {
  Fraction divisions{1, 1};
  Fraction time{0, 1};  // length of a measure by the time signature; 0: none
  std::unordered_map<std::string, std::uint16_t> voices;
  std::vector<SignRange> open;  // measure repeats and slashes that have not ended
  std::uint32_t clefs_known = 0;
};

// By type and dots, 1024 a quarter note; 0 without a known type.
int WrittenDurationOf(pugi::xml_node note);

// What a <staff> says; 0: no staff has this number.
int StaffNumber(pugi::xml_node staff);

class CellReader {
 public:
  // `parsed` may be null.
  CellReader(Model& model, const LineTable& lines, ParsedScore* parsed)
      : model_(model), lines_(lines), parsed_(parsed) {}

  // Appends the measure to the part. The part's measures come in order. `base` is where the tree of the cell begins in
  // the text.
  void Read(int part, PartState& state, pugi::xml_node cell, std::size_t base);
  void EndPart(int part, PartState& state);

  // A place in the text as the one warning reports it.
  void Warn(pugi::xml_node node, const std::string& text);

 private:
  // One voice of the measure at hand, before its entries join the model's.
  struct OpenVoice {
    VoiceCell cell;
    std::vector<Entry> entries;
    std::vector<Pitch> pitches;
    std::vector<std::pair<std::ptrdiff_t, std::uint32_t>> notes;  // offset in the text, index of the entry
  };
  struct NoteData;

  std::size_t OffsetOf(pugi::xml_node node) const { return base_ + static_cast<std::size_t>(node.offset_debug()) - 1; }
  void ReadNote(pugi::xml_node node);
  NoteData Parse(pugi::xml_node node);
  void AddToEntry(const NoteData& note, OpenVoice& voice);
  Fraction LengthOf(pugi::xml_node node, const char* what);
  void ReadBackup(pugi::xml_node node);
  void ReadAttributes(pugi::xml_node node);
  void ReadStyle(pugi::xml_node style);
  void ReadClef(pugi::xml_node clef);
  void ReadTime(pugi::xml_node time);
  void Advance(const Fraction& length);
  OpenVoice& VoiceFor(const char* name, int staff);
  void Finish(Cell& cell);

  Model& model_;
  const LineTable& lines_;
  ParsedScore* parsed_;

  std::size_t base_ = 0;
  Part* part_ = nullptr;
  PartState* state_ = nullptr;
  Fraction cursor_;
  Fraction furthest_;
  Fraction chord_onset_;
  std::size_t open_count_ = 0;  // the first of open_ are in use
  std::vector<OpenVoice> open_;
  OpenVoice* last_ = nullptr;  // whose last entry a <chord/> note joins
};

}  // namespace sok
