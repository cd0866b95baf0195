// The two forms of text that a property list comes in. Both parsers answer null when anything is wrong.
#pragma once

#include <string_view>

#include "platform/value.h"

namespace sok {

Value ParseOldStyleList(std::u16string_view text);
Value ParseXmlList(std::u16string_view text);

}  // namespace sok
