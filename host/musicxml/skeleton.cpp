#include "host/musicxml/skeleton.h"

#include "host/musicxml/markup.h"

namespace sok {
namespace {

std::string_view NameAt(std::string_view text, std::size_t tag) {
  const std::string_view name = text.substr(tag + 1);
  return name.substr(0, name.find_first_of(" \t\r\n/>"));
}

}  // namespace

std::optional<Skeleton> SkeletonOf(std::string_view text) {
  Skeleton skeleton;
  std::string_view outer;  // name of what holds the cells
  std::string_view inner;  // and theirs
  int depth = 0;
  std::size_t kept = 0;
  bool inside = false;  // of an element that holds cells
  for (std::size_t at = text.find('<'); at != std::string_view::npos;) {
    std::size_t end = MarkupEnd(text, at);
    const char kind = at + 1 < text.size() ? text[at + 1] : '!';
    if (text[end - 1] != '>') return std::nullopt;
    if (kind == '!' && text.substr(at, 9) == "<!DOCTYPE") {
      const std::size_t subset = text.substr(at, end - at).find('[');
      if (subset != std::string_view::npos) return std::nullopt;
    } else if (kind == '/') {
      if (--depth < 0) return std::nullopt;
    } else if (kind != '!' && kind != '?') {
      const bool empty = text[end - 2] == '/';
      const std::string_view name = NameAt(text, at);
      if (depth == 0) {
        if (empty || !outer.empty()) return std::nullopt;
        if (name == "score-partwise")
          outer = "part", inner = "measure";
        else if (name == "score-timewise")
          outer = "measure", inner = "part";
        else
          return std::nullopt;
      }
      if (depth == 1) inside = name == outer;
      if (depth == 2 && inside && name == inner) {
        const std::size_t content = end;
        if (!empty) {
          end = ElementEnd(text, at);
          const std::size_t close = text.rfind('<', end - 1);
          if (!text.substr(close).starts_with("</") || NameAt(text, close + 1) != inner) return std::nullopt;
          skeleton.text.append(text, kept, content - kept);
          kept = close;
        }
        skeleton.cells.push_back({at, end});
      } else if (!empty) {
        ++depth;
      }
    }
    at = text.find('<', end);
  }
  if (depth != 0 || outer.empty()) return std::nullopt;
  skeleton.text.append(text, kept);
  return skeleton;
}

}  // namespace sok
