// Articulations that an extension gives to entries, as elements of the score. A definition begins with its character in
// the music font.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/engine/document.h"

namespace sok {

// The elements of the articulations on an entry; none when one of them is not among those that MusicXML has.
std::optional<std::vector<std::string>> ArticulationsOn(const Document& document, int entry);

}  // namespace sok
