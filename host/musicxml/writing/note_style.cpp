#include "host/musicxml/writing/note_style.h"

#include "host/musicxml/text/markup.h"

namespace sok {

NoteStyle NoteStyle::Of(std::string_view text, std::size_t first_note) {
  NoteStyle style;
  if (first_note == 0) return style;
  style.indent = Indentation(text, first_note);
  const std::size_t child = text.find('<', first_note + 1);
  const std::size_t end = ElementEnd(text, first_note);
  const std::string_view inner = child < end ? Indentation(text, child) : std::string_view();
  const std::string_view close = Indentation(text, text.rfind('<', end - 1));
  style.lines = !style.indent.empty() && !inner.empty();
  if (!style.lines) return style;
  if (inner.starts_with(style.indent)) style.inner = inner.substr(style.indent.size());
  if (close.starts_with(style.indent)) style.close = close.substr(style.indent.size());
  return style;
}

std::string NoteStyle::Format(std::string_view indentation, const std::string& name,
                              const std::vector<std::string>& children) const {
  const bool in_lines = lines && !indentation.empty();
  std::string result = "<" + name + ">";
  for (const std::string& child : children) {
    if (in_lines) result.append(indentation).append(inner);
    result += child;
  }
  if (in_lines) result.append(indentation).append(close);
  return result + "</" + name + ">";
}

std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '&') {
      result += "&amp;";
    } else if (c == '<') {
      result += "&lt;";
    } else if (c == '>') {
      result += "&gt;";
    } else if (c >= '\0' && c < ' ') {  // a reader takes a bare one for another, or for none
      result += "&#" + std::to_string(c) + ";";
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace sok
