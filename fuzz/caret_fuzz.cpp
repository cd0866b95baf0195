// Caret stripping in an exact-size buffer: stays inside, never grows the text, leaves no lone line break.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "SokExtShared/LIB/strings/utf16_strings.h"
#include "SokExtShared/LIB/text/caret_commands.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::size_t units = size / 2;
  const auto text = std::make_unique<unsigned short[]>(units + 1);
  std::copy_n(data, units * 2, reinterpret_cast<uint8_t*>(text.get()));
  text[units] = 0;
  const unsigned long before = sx_strlen(text.get());
  txt_strip_carets(text.get());
  const unsigned long after = sx_strlen(text.get());
  if (after > before) std::abort();
  for (unsigned long i = 0; i < after; ++i) {
    if (text[i] == '\n' || text[i] == '\r' || text[i] == '^') std::abort();
  }
  if (sx_strlen(ucaretfont) > 55 || sx_strlen(ucaretsize) > 15 || sx_strlen(ucaretefx) > 49) std::abort();
  return 0;
}
