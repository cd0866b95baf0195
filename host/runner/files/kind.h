// What a file is, by what is in it: other programs' names say little.
#pragma once

#include <string>
#include <string_view>

namespace sok {

// Whether bytes from the start of a file (and, of a zip, those from its end) are those of a MusicXML score, sound or
// not.
bool LooksLikeScore(std::string_view start, std::string_view end);

// What a file is that people take for a score, such as "a MIDI file"; empty where it may be a score, or nobody knows.
std::string_view ForeignKind(std::string_view bytes, const std::string& name);

}  // namespace sok
