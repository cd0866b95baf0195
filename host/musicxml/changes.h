// What a document holds beyond the score that was read into it.
#pragma once

#include <string>
#include <vector>

#include "host/musicxml/frames.h"

namespace sok {

// The layers whose frames differ from the model's, by measure, slot and layer. `lost` and `line` are left empty.
std::vector<Change> FindChanges(const Model& model, const Document& document);

}  // namespace sok
