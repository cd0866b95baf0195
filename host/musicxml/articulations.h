// Articulations that an extension gives to entries, as elements of the score.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/engine/document.h"

namespace sok {

inline constexpr unsigned int kAssignmentTag = 0x6564494D;  // 'edIM': 12 bytes, the definition's number first
inline constexpr unsigned int kDefinitionTag = 0x4F044958;  // 60 bytes, its character in the music font first

// The elements of the articulations on an entry; none when one of them is not among those that MusicXML has.
std::optional<std::vector<std::string>> ArticulationsOn(const Document& document, int entry);

}  // namespace sok
