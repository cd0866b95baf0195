#include "host/musicxml/text/markup.h"

#include <algorithm>

namespace sok {
namespace {

constexpr std::size_t kStep = 512;

int CountLineEnds(std::string_view text) { return static_cast<int>(std::count(text.begin(), text.end(), '\n')); }

std::size_t Behind(std::string_view text, std::size_t from, std::string_view end) {
  const std::size_t at = text.find(end, from);
  return at == std::string_view::npos ? text.size() : at + end.size();
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsXmlSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsXmlSpace(text.back())) text.remove_suffix(1);
  return text;
}

std::size_t MarkupEnd(std::string_view text, std::size_t begin) {
  const char kind = begin + 1 < text.size() ? text[begin + 1] : '>';
  if (kind == '/') {  // holds no quotes
    const std::size_t end = text.find('>', begin + 2);
    return end == std::string_view::npos ? text.size() : end + 1;
  }
  if (kind == '!' || kind == '?') {
    const std::string_view rest = text.substr(begin);
    if (rest.starts_with("<!--")) return Behind(text, begin + 4, "-->");
    if (rest.starts_with("<![CDATA[")) return Behind(text, begin + 9, "]]>");
    if (kind == '?') return Behind(text, begin + 2, "?>");
  }
  for (std::size_t at = begin + 1; at < text.size(); ++at) {
    if (text[at] > '>') continue;  // letters
    if (text[at] == '>') return at + 1;
    if (text[at] == '"' || text[at] == '\'') {
      at = text.find(text[at], at + 1);
      if (at == std::string_view::npos) break;
    }
  }
  return text.size();
}

std::string_view ElementName(std::string_view text) {
  text.remove_prefix(std::min<std::size_t>(text.starts_with("</") ? 2 : 1, text.size()));
  const auto* const end = std::find_if(text.begin(), text.end(), EndsName);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

// Nothing but elements of the same name counts: all others inside end before this one does.
std::size_t ElementEnd(std::string_view text, std::size_t begin) {
  std::size_t end = MarkupEnd(text, begin);
  if (text[end - 2] == '/') return end;
  std::size_t at = text.find('<', end);
  if (at < text.size() && text.substr(at).starts_with("</")) return MarkupEnd(text, at);  // nothing inside
  const std::string_view name = ElementName(text.substr(begin));
  for (int depth = 1; at < text.size(); at = text.find('<', end)) {
    const char kind = at + 1 < text.size() ? text[at + 1] : '>';
    const bool element = kind != '!' && kind != '?';
    const bool its = element && IsNamed(text.substr(at + (kind == '/' ? 2 : 1)), name);
    end = its || !element ? MarkupEnd(text, at) : at + 1;
    if (its && text[end - 2] != '/') depth += kind == '/' ? -1 : 1;
    if (depth == 0) return end;
  }
  return text.size();
}

std::size_t SpaceBefore(std::string_view text, std::size_t at) {
  while (at > 0 && IsXmlSpace(text[at - 1])) --at;
  return at;
}

std::string_view Indentation(std::string_view text, std::size_t at) {
  const std::size_t begin = SpaceBefore(text, at);
  const std::string_view space = text.substr(begin, at - begin);
  std::size_t line = space.rfind('\n');
  if (line == std::string_view::npos) return {};
  if (line > 0 && space[line - 1] == '\r') --line;
  return space.substr(line);
}

int LineTable::LineOf(std::size_t offset) const {
  if (before_.empty()) {
    int count = 0;
    for (std::size_t at = 0; at <= text_.size(); at += kStep) {
      before_.push_back(count);
      count += CountLineEnds(text_.substr(at, kStep));
    }
  }
  offset = std::min(offset, text_.size());
  const std::size_t block = offset / kStep;
  return 1 + before_[block] + CountLineEnds(text_.substr(block * kStep, offset % kStep));
}

}  // namespace sok
