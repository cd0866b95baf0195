// Any bytes as a packed score: what is unpacked is no more than the bytes can hold, packed again it is the same, and
// the rest of the zip stays.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "host/errors.h"
#include "host/musicxml/limits.h"
#include "host/musicxml/text/archive.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::string_view archive(reinterpret_cast<const char*>(data), size);
  sok::PackedScore score;
  try {
    score = sok::UnpackScore(archive);
  } catch (const sok::Error&) {
    return 0;
  }
  if (score.bytes.size() > std::max<std::uint64_t>(sok::kFreeSize, size * sok::kLargestRatio)) std::abort();
  score.bytes += "<!-- more -->";
  std::string packed;
  try {
    packed = sok::RepackScore(archive, score);
  } catch (const sok::Error&) {
    return 0;  // a zip that can be read and not be written: other members may be damaged
  }
  const sok::PackedScore again = sok::UnpackScore(packed);
  if (again.member != score.member || again.bytes != score.bytes) std::abort();
  return 0;
}
