// What a document holds beyond the score that was read into it.
#pragma once

#include <string>
#include <vector>

#include "host/musicxml/frames.h"

namespace sok {

// The layers whose frames differ from the model's, by measure, slot and layer.
std::vector<Change> FindChanges(const Model& model, const Document& document);

// What happened to the entries of such a frame, in words.
std::string EditsOf(const Model& model, const Document& document, const Change& change);

}  // namespace sok
