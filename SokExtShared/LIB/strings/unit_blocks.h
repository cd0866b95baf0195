// UTF-16 units looked at several at a time. For functions that read zero-terminated text.
// For the kit's own sources.
//
// Nothing may be read behind a terminator, so every unit is asked for zero before the next one is read. What can be
// saved is the turn of the loop, and work on units that are already known to be inside.
#pragma once

#include <cstdint>
#include <cstring>

namespace unit_blocks {

// How many units stand before the first one that is not above `low`, at most 8. The terminator never is.
inline unsigned EndWithin8(const unsigned short* text, unsigned short low = 0) {
  if (text[0] <= low) return 0;
  if (text[1] <= low) return 1;
  if (text[2] <= low) return 2;
  if (text[3] <= low) return 3;
  if (text[4] <= low) return 4;
  if (text[5] <= low) return 5;
  if (text[6] <= low) return 6;
  if (text[7] <= low) return 7;
  return 8;
}

// Whether one of four units that may all be read is this one.
inline bool AnyOf4Is(const unsigned short* text, unsigned short unit) {
  constexpr std::uint64_t kOnes = 0x0001000100010001;
  std::uint64_t units;
  std::memcpy(&units, text, sizeof units);
  units ^= unit * kOnes;
  return ((units - kOnes) & ~units & (kOnes << 15)) != 0;
}

}  // namespace unit_blocks
