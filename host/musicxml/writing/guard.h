// The last look at a patched measure before anybody gets it.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/musicxml/model.h"
#include "host/musicxml/reading/measure_reader.h"

namespace sok {

// A voice of a measure that does not come out as it was read.
struct VoiceChange {
  std::string voice;
  int staff = 0;                 // of a voice without a name
  bool was = false;              // there when the score was read
  bool is = false;               // there now
  std::vector<EXENTRY> entries;  // what is there now; none: one whole-measure rest
  int home = 0;                  // the staff that they live on; 0: whichever
};

class Guard {
 public:
  explicit Guard(const Model& model) : model_(model), lines_({}), reader_(again_, lines_) {}

  // Reads the text of a patched measure again, by its own means: but for the voices named everything in it must be what
  // and where it was, and they what was to come.
  bool Passes(const Part& part, const PartMeasure& cell, std::string_view patched,
              const std::vector<VoiceChange>& voices);

 private:
  void Read(std::string_view measure, const Fraction& divisions);

  const Model& model_;
  Model again_;  // of one part with one measure
  LineTable lines_;
  MeasureReader reader_;
  std::string text_;
  pugi::xml_document tree_;
};

}  // namespace sok
