// A score's text as the engraver reads it: by parts, in UTF-8, with the notes named that came or went.
#pragma once

#include <string>
#include <vector>

#include "host/musicxml/score.h"

namespace sok {

struct PictureTexts {
  std::string before;  // notes that went have the id "sok-went-" and a number
  std::string after;   // notes that came have the id "sok-came-" and a number
};

// Notes are compared by their text, in the staff-measures of `changes` alone: what is the same before and after is not
// named. `text_after` is what Score::WriteText says.
PictureTexts NameChangedNotes(const Score& score, const std::string& text_after, const std::vector<Change>& changes);

}  // namespace sok
