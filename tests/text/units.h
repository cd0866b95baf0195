// UTF-16 literals as the kit's units and back.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// Zero-terminated, on the heap and of exact size, so that the address sanitizer sees every step outside.
inline std::vector<unsigned short> Units(std::u16string_view text) {
  std::vector<unsigned short> units(text.begin(), text.end());
  units.push_back(0);
  return units;
}

inline std::u16string Text(const unsigned short* units) {
  std::u16string text;
  for (; *units != 0; ++units) text.push_back(static_cast<char16_t>(*units));
  return text;
}
