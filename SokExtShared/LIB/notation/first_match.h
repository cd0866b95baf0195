// The search that the find-or-create functions share. For the kit's own sources.
#pragma once

inline constexpr int kLastDefinition = 1000;  // of articulations, chord suffixes and staff lists

// The lowest number from 1 to `last` that `matches`; 0 when none does.
template <typename Matches>
int FirstMatch(int last, Matches matches) {
  for (int number = 1; number <= last; ++number) {
    if (matches(number)) return number;
  }
  return 0;
}
