// What the module SokArchive does for archive.h: all that needs libzip.
#pragma once

#include "host/musicxml/text/archive.h"

namespace sok {

// The functions of the same names.
struct ZipFunctions {
  PackedScore (*unpack)(std::string_view archive);
  std::string (*repack)(std::string_view archive, const PackedScore& score);
  std::string (*pack)(const PackedScore& score);
};

}  // namespace sok

// The module's one export.
extern "C" const sok::ZipFunctions* SokZipFunctions();
