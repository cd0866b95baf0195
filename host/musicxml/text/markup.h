// Places in XML text that the parser does not tell: where elements end, where lines begin.
//
// The text has been parsed before, so its tags match.
//
// This folder has what is done with text that need not be understood as music: zips, encodings, elements.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace sok {

inline bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

inline bool EndsName(char c) { return c <= '>' && (c == '>' || c == '/' || IsXmlSpace(c)); }

// Without the white space around it.
std::string_view Trimmed(std::string_view text);

// Behind the tag, comment, instruction or CDATA section that begins at `begin` (a '<'); the text's size when it does
// not end.
std::size_t MarkupEnd(std::string_view text, std::size_t begin);

// The name of the element that begins with this text, or ends with it ("</" and on): empty where it has none.
std::string_view ElementName(std::string_view text);

// Whether an element's name, which the text begins with, is this one.
inline bool IsNamed(std::string_view text, std::string_view name) {
  return text.size() > name.size() && text.front() == name.front() && text.starts_with(name) &&
         EndsName(text[name.size()]);
}

// Behind the end tag of the element whose start tag begins at `begin`; the text's size when it does not end.
std::size_t ElementEnd(std::string_view text, std::size_t begin);

// Where the white space before `at` begins.
std::size_t SpaceBefore(std::string_view text, std::size_t at);

// The white space before `at` from its last line end on ("\r\n    "); empty when no line begins there.
std::string_view Indentation(std::string_view text, std::size_t at);

// Line numbers of offsets, counted once for the whole text.
class LineTable {
 public:
  explicit LineTable(std::string_view text) : text_(text) {}
  int LineOf(std::size_t offset) const;  // from 1

 private:
  std::string_view text_;
  mutable std::vector<int> before_;  // line ends before every kStep-th byte; filled at the first question
};

}  // namespace sok
