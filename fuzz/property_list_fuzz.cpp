// Any bytes as a property list: an Info.plist in XML, a table of strings, an old-style list. The same text in UTF-8 and
// in UTF-16 is the same list.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/encoding.h"
#include "platform/property_list.h"

namespace {

bool Equal(const sok::Ref<const sok::Dictionary>& left, const sok::Ref<const sok::Dictionary>& right) {
  if (!left || !right) return !left && !right;
  return std::equal(left->entries.begin(), left->entries.end(), right->entries.begin(), right->entries.end(),
                    [](const auto& a, const auto& b) {
                      return a.first == b.first && a.second->kind() == b.second->kind() &&
                             a.second->Description() == b.second->Description();
                    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto list = sok::ParsePropertyList(bytes);
  if (const auto units = sok::Decode(bytes, kCFStringEncodingUTF8); units && !units->starts_with(u'\0')) {
    std::string wide = "\xFF\xFE";  // before a zero unit this would be the mark of UTF-32
    for (const char16_t unit : *units) wide += {static_cast<char>(unit), static_cast<char>(unit >> 8)};
    if (!Equal(list, sok::ParsePropertyList(wide))) std::abort();
  }
  return 0;
}
