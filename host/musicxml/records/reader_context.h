// What the reader hands to the functions that turn the rest of a score (layout, words, lines) into records.
#pragma once

#include <pugixml.hpp>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/reading/open_measure.h"
#include "host/musicxml/score.h"

namespace sok {

// The score beside its music, valid for the time of the call only.
struct ReaderContext {
  pugi::xml_node root;  // score-partwise or score-timewise; what its measures hold may be missing
  Document& document;
  const std::vector<Staff>& staves;      // [slot - 1]
  const std::vector<Measure>& measures;  // [measure - 1]

  // The slot of a staff of a part, from 1; staves beyond the part's last answer the last.
  short SlotOf(int part, int staff) const {
    short found = 0;
    for (std::size_t i = 0; i < staves.size(); ++i) {
      if (staves[i].part == part && (found == 0 || staves[i].staff <= staff)) found = static_cast<short>(i + 1);
    }
    return found;
  }
};

}  // namespace sok
