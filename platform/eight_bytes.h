// Eight bytes at once of texts that are mostly ASCII.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace sok {

// How many of eight bytes, from the front, are ASCII.
inline std::size_t AsciiOfEight(const char* bytes) {
  std::uint64_t all;
  std::memcpy(&all, bytes, sizeof all);
  all &= 0x8080808080808080;
  const bool little = std::endian::native == std::endian::little;
  return static_cast<std::size_t>(little ? std::countr_zero(all) : std::countl_zero(all)) / 8;
}

// Makes a unit of each of eight bytes.
inline void WidenEight(const char* bytes, char16_t* units) {
  for (int i = 0; i < 8; ++i) units[i] = static_cast<unsigned char>(bytes[i]);
}

}  // namespace sok
