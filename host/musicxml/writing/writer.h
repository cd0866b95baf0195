// From changes of frames to the patched text.
//
// This folder has the way out: which frames changed, what that means for each entry, the texts of notes, the measure
// patched, and a last look at it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/model.h"

namespace sok {

// What hung on the layer's notes that are gone, beside the notes, by element name.
std::vector<std::string> AttachedTo(const Model& model, const Document& document, std::string_view text,
                                    const Change& change);

// The text with the changes in place, each changed measure of which has been read again. Throws TextError, and Error
// for lengths too large to reckon with.
std::string PatchText(const Model& model, const Document& document, std::string_view text,
                      const std::vector<Change>& changes, const WriteOptions& options);

}  // namespace sok
