// Editing by positions that count from 1, as both string classes have it: positions out of range are repaired, cut or
// ignored. For the kit's own sources.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

namespace positions {

// Where `part` stands first; 0 when it is absent. The empty text is at 1, except in an empty one.
template <typename Unit, typename Traits>
int Pos(const std::basic_string<Unit, Traits>& text, const std::basic_string<Unit, Traits>& part) {
  const std::size_t place = text.find(part);
  return place < text.size() ? static_cast<int>(place + 1) : 0;
}

// Removes up to `count` units; nothing when position or count is below 1 or the position lies beyond the end.
template <typename Unit, typename Traits>
void Delete(std::basic_string<Unit, Traits>& text, unsigned int position, int count) {
  if (position >= 1 && count >= 1 && position <= text.size()) text.erase(position - 1, static_cast<std::size_t>(count));
}

// Up to `count` units; a position below 1 counts as 1. Empty when the count is below 1 or the position lies beyond the
// end.
template <typename Unit, typename Traits>
std::basic_string<Unit, Traits> SubString(const std::basic_string<Unit, Traits>& text, int position, int count) {
  const auto start = static_cast<std::size_t>(std::max(position, 1) - 1);
  if (count < 1 || start >= text.size()) return {};
  return text.substr(start, static_cast<std::size_t>(count));
}

// Shortens; never lengthens.
template <typename Unit, typename Traits>
void SetLength(std::basic_string<Unit, Traits>& text, unsigned int length) {
  if (length < text.size()) text.resize(length);
}

}  // namespace positions
