// The two forms of text that a property list comes in. Both parsers answer null when anything is wrong.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/value.h"

namespace sok {

// `place` receives where the entry or element stands that was read last: the one that is wrong.
Value ParseOldStyleList(std::u16string_view text, std::size_t& place);
Value ParseXmlList(std::u16string_view text, std::size_t& place);

}  // namespace sok
