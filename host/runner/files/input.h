// Files and streams that scores come from.
#pragma once

#include <string>
#include <vector>

namespace sok {

inline constexpr const char* kStream = "-";  // stdin or stdout in the place of a file

// The bytes of a file, or of stdin for "-". Throws InputError.
std::string ReadBytes(const std::string& path);

// What messages call an input: its path, or "stdin".
std::string DisplayName(const std::string& path);

// One score to work on.
struct Input {
  std::string path;
  std::string relative;  // below the folder that was named, or the file's name alone; for --output-dir
};

// Replaces folders by the scores in them and below (.musicxml, .xml, .mxl), in order of their paths. Hidden files and
// folders are passed over, links to folders are not followed. Throws InputError for a path that is not there and for a
// folder without scores.
std::vector<Input> FindInputs(const std::vector<std::string>& paths);

}  // namespace sok
