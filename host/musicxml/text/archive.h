// Scores packed in a zip (.mxl).
#pragma once

#include <string>
#include <string_view>

namespace sok {

struct PackedScore {
  std::string member;  // its name in the zip
  std::string bytes;   // unpacked
};

bool IsArchive(std::string_view bytes);

// The first rootfile that META-INF/container.xml names; without a container the first member that looks like a score.
// What is unpacked is bounded by the archive's own size (limits.h). Throws Error with the reason.
PackedScore UnpackScore(std::string_view archive);

// The archive with one member replaced: names, order, times and compression methods stay, other members are copied as
// they are. Throws Error, also when the result read again holds anything else.
std::string RepackScore(std::string_view archive, const PackedScore& score);

// A new archive of one score; the same bytes whenever it is made. Throws Error.
std::string PackScore(const PackedScore& score);

}  // namespace sok
