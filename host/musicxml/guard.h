// The last look at a patched text before anybody gets it.
#pragma once

#include <string_view>
#include <vector>

#include "host/musicxml/writer.h"

namespace sok {

// Compares the patched text with the one that was read, by its own means: outside of the measures with named changes
// every byte must be the same; those measures are read again, and but for the voices named everything in them must be
// what and where it was. Throws TextError.
void CheckPatchedText(const Model& model, std::string_view text, std::string_view patched,
                      const std::vector<VoiceChange>& voices);

}  // namespace sok
