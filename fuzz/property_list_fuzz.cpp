// Any bytes as a property list: an Info.plist in XML, a table of strings, an old-style list.
#include <cstdint>
#include <string_view>

#include "platform/property_list.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto list = sok::ParsePropertyList({reinterpret_cast<const char*>(data), size});
  if (list) list->Description();
  return 0;
}
