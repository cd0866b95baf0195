// What a score may hold. Beyond these bounds it is refused with a message, before it costs time and memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sok {

inline constexpr int kMostMeasures = 32767;  // the host counts them in 16 bits
inline constexpr int kMostStaves = 64;       // of one part
inline constexpr int kMostStavesInAll = 1000;
inline constexpr std::size_t kMostVoices = 65'535;  // of one part, so of one measure, too
inline constexpr std::uint64_t kMostStaffMeasures = 500'000;  // staves by measures, whatever is in them

// Of the text, unpacked and in UTF-8.
inline constexpr std::size_t kLargestText = std::size_t{1} << 30;

// A packed text may be this many times as large as its zip, or as large as any text of this many bytes may be.
inline constexpr std::uint64_t kLargestRatio = 300;
inline constexpr std::uint64_t kFreeSize = std::uint64_t{16} << 20;
inline constexpr std::int64_t kMostMembers = 10'000;

}  // namespace sok
