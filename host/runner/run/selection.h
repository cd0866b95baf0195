// Which measures and staves of a score a command works on, from the command line to the regions that the extension is
// invoked with.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SokExtShared/SokEDK/Source/host_types.h"
#include "host/engine/document.h"
#include "host/musicxml/score.h"

namespace sok {

// Numbers from 1, both ends inside.
struct NumberRange {
  short first = 1;
  short last = 1;
  bool open = false;  // "5-": to the last there is

  bool operator==(const NumberRange&) const = default;
};

// "3-8,12,20-": ranges in the order given. Throws UsageError that names the option.
std::vector<NumberRange> ParseRanges(std::string_view text, std::string_view option);

// One --hide-layer: a layer, from 0, hidden on some staves, or on all when there are no ranges.
struct HiddenLayer {
  short layer = 0;
  std::vector<NumberRange> staves;
};

// "2" or "2:1,3-4". Throws UsageError.
HiddenLayer ParseHiddenLayer(std::string_view text);

// A layer number as users count, 1 to 4, to the document's, 0 to 3. Throws UsageError that names the option.
short ParseLayer(std::string_view text, std::string_view option);

// What the options say. Measures by position and by printed number add up, and so do staves and parts; nothing given
// means all.
struct Selection {
  std::vector<NumberRange> measures;
  std::vector<std::string> numbers;  // printed measure numbers: "3-8", "12", "X1"
  std::vector<NumberRange> staves;
  std::vector<std::string> parts;  // names, abbreviations or ids
  std::vector<HiddenLayer> hidden_layers;
};

// One call of the extension: a block of measures and staves on which the same layers are shown.
struct Invocation {
  NumberRange measures;
  NumberRange slots;
  bool layer_shown[kLayers] = {true, true, true, true};

  EREGION Region(const Document& document) const;
};

// Calls `visit(invocation, measure, slot)` for every staff-measure of the blocks, by measure and staff: blocks of the
// same measures stand one after the other, and lines go by measure across them.
template <typename Visit>
void ForEachStaffMeasure(const std::vector<Invocation>& blocks, const Visit& visit) {
  for (std::size_t begin = 0, end = 0; begin < blocks.size(); begin = end) {
    while (end < blocks.size() && blocks[end].measures == blocks[begin].measures) ++end;
    for (int measure = blocks[begin].measures.first; measure <= blocks[begin].measures.last; ++measure) {
      for (std::size_t block = begin; block < end; ++block) {
        for (int slot = blocks[block].slots.first; slot <= blocks[block].slots.last; ++slot) {
          visit(blocks[block], static_cast<short>(measure), static_cast<short>(slot));
        }
      }
    }
  }
}

// The blocks of a selection, by measure, then by staff. What lies outside of the score is left out with a warning.
// Throws Error when nothing is left.
std::vector<Invocation> PlanInvocations(const Score& score, const Selection& selection,
                                        std::vector<std::string>& warnings);

}  // namespace sok
