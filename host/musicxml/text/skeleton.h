// A score's text without its measures, and where those are.
//
// A parsed tree is many times as large as its text. Reading a skeleton and then one measure after the other keeps all
// but one measure's tree out of memory.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sok {

struct Skeleton {
  struct Range {
    std::size_t begin = 0;  // of its '<'
    std::size_t end = 0;
  };
  std::string text;          // every cell is left with its start tag and its end tag
  std::vector<Range> cells;  // the <measure>s of the <part>s, or the other way round, in order of the text
};

// None for a text that has not the structure of a score; what is wrong with it is for the parser to say.
std::optional<Skeleton> SkeletonOf(std::string_view text);

}  // namespace sok
