#include "SokExtShared/LIB/notation/diagnostics.h"

#include <bit>
#include <cstdint>

bool ValidPointer(void* pointer) {
  const auto low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pointer));
  return pointer != nullptr && low != std::rotl(low, 8);
}

char* TagToString(int tag) {
  static char text[5];
  const auto byte = [tag](int index) { return static_cast<char>(tag >> (8 * index)); };
  text[0] = byte(1);
  text[1] = byte(0);
  text[2] = byte(3);
  text[3] = byte(2);
  return text;
}
