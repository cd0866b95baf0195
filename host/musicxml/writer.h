// From changes of frames to the patched text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/model.h"

namespace sok {

// A voice of a measure that does not come out as it was read; the measure alone when it neither was nor is there.
struct VoiceChange {
  int part = 0;
  short measure = 0;  // from 1
  std::string voice;
  int staff = 0;                 // of a voice without a name
  bool was = false;              // there when the score was read
  bool is = false;               // there now
  std::vector<EXENTRY> entries;  // what is there now; none: one whole-measure rest
  int home = 0;                  // the staff that they live on; 0: whichever
};

// What hung on the layer's notes that are gone, beside the notes, by element name.
std::vector<std::string> AttachedTo(const Model& model, const Document& document, std::string_view text,
                                    const Change& change);

// The text with the changes spliced in, and what they are in terms of voices. Throws TextError, and Error for
// lengths too large to reckon with.
std::string PatchText(const Model& model, const Document& document, std::string_view text,
                      const std::vector<Change>& changes, const WriteOptions& options,
                      std::vector<VoiceChange>& voices);

}  // namespace sok
