// How a score's text is laid out, so that new elements look like their neighbours.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sok {

struct NoteStyle {
  std::string indent;        // before a <note>, from the line end on; empty: elements follow each other in one line
  std::string inner = "  ";  // what its children are indented by beyond that
  std::string close;         // the same for its end tag
  bool lines = false;        // children have lines of their own

  // Takes the layout of the note at `first_note`; the usual one when that is 0.
  static NoteStyle Of(std::string_view text, std::size_t first_note);

  // An element in the layout of the score; its white space before is left to the caller.
  std::string Format(std::string_view indentation, const std::string& name,
                     const std::vector<std::string>& children) const;
};

std::string Escaped(std::string_view text);

}  // namespace sok
