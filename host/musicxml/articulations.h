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

struct AddedArticulations {
  std::size_t entry = 0;              // index in the frame
  std::vector<std::string> elements;  // "accent" …
};

// The difference between two frames when it is nothing but articulations; none when there is another one, or when an
// articulation is not one that MusicXML has.
std::optional<std::vector<AddedArticulations>> FindArticulations(const Document& document, std::vector<EXENTRY> before,
                                                                 const std::vector<EXENTRY>& after);

}  // namespace sok
