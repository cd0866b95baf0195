// What the reader hands to the functions that turn the rest of a score (layout, words, lines) into records.
#pragma once

#include <pugixml.hpp>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/score.h"

namespace sok {

// One <measure> of one part: in a timewise score the <part> in the measure.
struct MeasureNode {
  pugi::xml_node node;  // null: this part lacks this measure
  int part = 0;         // index, from 0
  short measure = 0;    // from 1
};

// The whole parsed score, valid for the time of the call only.
struct ReaderContext {
  pugi::xml_node root;  // score-partwise or score-timewise
  Document& document;
  const std::vector<Staff>& staves;      // [slot - 1]
  const std::vector<Measure>& measures;  // [measure - 1]
  std::vector<MeasureNode> nodes;        // part by part, and in a part measure by measure
  // Byte offset of a <note> in the text (node.offset_debug()) to the number of its entry. Notes of a chord share one.
  std::unordered_map<std::ptrdiff_t, int> entry_numbers;
  // Same key, to the note's place in its measure in duration units (1024 a quarter note), also for directions.
  std::unordered_map<std::ptrdiff_t, int> positions;

  // The slot of a staff of a part, from 1; staves beyond the part's last answer the last.
  short SlotOf(int part, int staff) const {
    short found = 0;
    for (std::size_t i = 0; i < staves.size(); ++i) {
      if (staves[i].part == part && (found == 0 || staves[i].staff <= staff)) found = static_cast<short>(i + 1);
    }
    return found;
  }
  int EntryOf(pugi::xml_node note) const {
    const auto at = entry_numbers.find(note.offset_debug());
    return at == entry_numbers.end() ? 0 : at->second;
  }
  int PositionOf(pugi::xml_node child) const {
    const auto at = positions.find(child.offset_debug());
    return at == positions.end() ? 0 : at->second;
  }
};

}  // namespace sok
