// The difference of two texts by lines.
#pragma once

#include <string>
#include <string_view>

namespace sok {

// A unified diff with three lines of context, empty when the texts are the same. Line ends are part of the lines. The
// texts are compared measure by measure where both have as many, so that a long score takes no longer than its length.
std::string UnifiedDiff(std::string_view before, std::string_view after, const std::string& before_name,
                        const std::string& after_name);

}  // namespace sok
