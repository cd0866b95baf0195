#include "host/runner/report/text.h"

#include <algorithm>
#include <cctype>

namespace sok {
namespace {

char Lower(char letter) { return static_cast<char>(std::tolower(static_cast<unsigned char>(letter))); }

}  // namespace

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> items;
  for (;;) {
    const auto end = text.find(separator);
    items.push_back(text.substr(0, end));
    if (end == std::string_view::npos) return items;
    text.remove_prefix(end + 1);
  }
}

bool SameIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

bool EndsWithIgnoringCase(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && SameIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

std::string Counted(long count, std::string_view noun) {
  std::string plural(noun);
  if (count != 1) plural = noun == "staff" ? "staves" : plural + "s";
  return std::to_string(count) + " " + plural;
}

std::string RangeText(int first, int last) {
  return first == last ? std::to_string(first) : std::to_string(first) + "-" + std::to_string(last);
}

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool follows = (byte & 0xC0) == 0x80;
    // U+0300 to U+036F, the combining marks that names are written with: 0xCC and the first half of 0xCD.
    const bool combining =
        byte == 0xCC || (byte == 0xCD && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xB0);
    if (!follows && !combining) ++width;
  }
  return width;
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  const std::size_t taken = DisplayWidth(text);
  if (taken < width) padded.append(width - taken, ' ');
  return padded;
}

}  // namespace sok
