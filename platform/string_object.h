// Strings of UTF-16 units.
#pragma once

#include <string>
#include <string_view>

#include "platform/object.h"

struct __CFString final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kString;

  explicit __CFString(std::u16string text);
  std::u16string Description() const override { return units; }

  const std::u16string units;
  const bool is_ascii;
};

namespace sok {

using String = ::__CFString;

// The units of a string that may be null; null counts as empty.
std::u16string_view View(CFStringRef string);

// ASCII text widened.
std::u16string Widen(std::string_view ascii);

}  // namespace sok
