// From the text of a score to the model.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "host/musicxml/model.h"

namespace sok {

// `text` is UTF-8. Throws TextError.
Model ReadModel(std::string_view text, const ReadOptions& options);

// What stands around the measures, parsed: the tree of the score without what its measures hold, or the whole one.
void ParseHead(std::string_view text, pugi::xml_document& tree);

}  // namespace sok
