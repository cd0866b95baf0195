// Property lists: Info.plist files and tables of strings, as XML or in the old style of braces and semicolons.
#pragma once

#include <string>
#include <string_view>

#include "platform/value.h"

namespace sok {

// The dictionary in a property list's bytes: UTF-8, or UTF-16 or UTF-32 with a byte order mark. An old-style list may
// stand without its outer braces, and one of nothing but blanks and comments is empty. Null when anything is wrong;
// `line`, where there is one, then receives the line of what is wrong.
Ref<const Dictionary> ParsePropertyList(std::string_view bytes, int* line = nullptr);

// The same for a file; null also when it cannot be read (then the line is 0).
Ref<const Dictionary> ReadPropertyList(const std::string& path, int* line = nullptr);

// Lists nested deeper than this are refused.
constexpr int kDeepestList = 256;

}  // namespace sok
