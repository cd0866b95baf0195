// From the text of a score to the model.
//
// This folder has the way in: the parts of a measure, made once, and the model from them.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "host/musicxml/model.h"

namespace sok {

// `text` is UTF-8. Throws TextError.
Model ReadModel(std::string_view text, const ReadOptions& options);

}  // namespace sok
