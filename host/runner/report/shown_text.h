// Text from elsewhere (a score, a file's name, an extension, a zip) as reports and messages show it.
#pragma once

#include <string>
#include <string_view>

namespace sok {

// One line that a terminal shows as it stands: control characters (a line end is "\n", an escape "\x1b"), characters
// that end a line or turn its direction ("\u202e"), and bytes that are no UTF-8 are shown, not obeyed. The result is
// UTF-8; what is shown already stays as it is.
std::string ShownText(std::string_view text);

// The same for text of several lines, whose line ends and tabs stay.
std::string ShownLines(std::string_view text);

// A JSON text without such characters in its strings, which JSON writes "\u009b". The strings are the same.
std::string ShownJson(std::string_view json);

}  // namespace sok
