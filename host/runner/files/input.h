// Files and streams that scores come from.
//
// This folder has what is done with files: found and recognised here, written so that nothing is lost in output_file.h.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/musicxml/score.h"

namespace sok {

inline constexpr const char* kStream = "-";  // stdin or stdout in the place of a file

// The bytes of a file, or of stdin for "-". Throws Error.
std::string ReadBytes(const std::string& path);

// The score of a file, or of stdin for "-". Throws Error.
std::unique_ptr<Score> ReadScore(const std::string& path, const ReadOptions& options = {});

// What messages call an input: its path, or "stdin".
std::string DisplayName(const std::string& path);

// One score to work on.
struct Input {
  std::string path;
  std::string relative;    // below the folder that was named, or the file's name alone; for --output-dir
  std::string error = {};  // why there is nothing to work on; empty when there is
};

struct FoundInputs {
  std::vector<Input> inputs;
  std::vector<std::string> messages;  // of files that were passed over
};

// Replaces folders by the scores in them and below (.musicxml, .xml, .mxl), in order of their paths. Hidden files and
// folders are passed over, and so are files that hold no score; links to folders are not followed. `left_out` is a
// folder that is not looked into, unless it is itself named; empty: none. A path that is not there and a folder without
// scores are inputs with an error.
FoundInputs FindInputs(const std::vector<std::string>& paths, const std::string& left_out = {});

}  // namespace sok
