// The score that validated commands run on.
#pragma once

namespace sok {

// MusicXML: three staves in two parts, five measures, with empty measures, rests of a whole measure, two voices, a
// slur, a hairpin, words, lyrics and articulations. On every side of its middle, which commands run on as a part of the
// score, there are notes; at its end there is nothing.
extern const char* const kValidationScore;

}  // namespace sok
