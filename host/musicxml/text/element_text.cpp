#include "host/musicxml/text/element_text.h"

#include <algorithm>

namespace sok {
namespace {

constexpr std::string_view kNoteParts[] = {
    "grace",      "cue",      "chord",         "pitch", "unpitched", "rest",      "duration",   "tie",
    "instrument", "footnote", "level",         "voice", "type",      "dot",       "accidental", "time-modification",
    "stem",       "notehead", "notehead-text", "staff", "beam",      "notations", "lyric",      "play",
    "listen"};
constexpr std::string_view kPitchParts[] = {"step", "alter", "octave", "display-step", "display-octave"};
constexpr std::string_view kBarlineParts[] = {"bar-style", "footnote", "level",  "wavy-line", "segno",
                                              "coda",      "fermata",  "ending", "repeat"};

std::size_t PlaceIn(ElementOrder order, std::string_view name) {
  return static_cast<std::size_t>(std::find(order.begin(), order.end(), name) - order.begin());
}

// Where the attribute begins with the white space before it, and where it ends; equal when there is none.
struct AttributePlace {
  std::size_t begin = 0;
  std::size_t value = 0;
  std::size_t end = 0;
};
AttributePlace FindAttribute(std::string_view text, std::string_view name) {
  const std::size_t tag_end = MarkupEnd(text, 0);
  for (std::size_t at = ElementName(text).size() + 1; at < tag_end;) {
    const std::size_t begin = at;
    while (at < tag_end && IsXmlSpace(text[at])) ++at;
    const std::size_t equals = text.find('=', at);
    if (equals == std::string_view::npos || equals >= tag_end) break;
    const std::size_t quote = text.find_first_of("\"'", equals);
    const std::size_t end = text.find(text[quote], quote + 1);
    std::string_view found = text.substr(at, equals - at);
    while (!found.empty() && IsXmlSpace(found.back())) found.remove_suffix(1);
    if (found == name) return {begin, quote + 1, end + 1};
    at = end + 1;
  }
  return {};
}

}  // namespace

const ElementOrder kNoteOrder = kNoteParts;
const ElementOrder kPitchOrder = kPitchParts;
const ElementOrder kBarlineOrder = kBarlineParts;

std::string_view AttributeOf(std::string_view text, std::string_view name) {
  const AttributePlace place = FindAttribute(text, name);
  return place.end == 0 ? std::string_view() : text.substr(place.value, place.end - 1 - place.value);
}

ElementText::ElementText(std::string text) : text_(std::move(text)) {
  children_.reserve(16);
  Scan();
}

void ElementText::Scan() {
  children_.clear();
  const std::string_view text = text_;
  const std::size_t content = MarkupEnd(text, 0);
  for (std::size_t at = text.find('<', content); at != std::string_view::npos && text[at + 1] != '/';) {
    const bool element = text[at + 1] != '!' && text[at + 1] != '?';
    const std::size_t end = element ? ElementEnd(text, at) : MarkupEnd(text, at);
    if (element) children_.push_back({at, end});
    at = text.find('<', end);
  }
}

const ElementText::ChildPlace* ElementText::Find(std::string_view name) const {
  const auto at = std::find_if(children_.begin(), children_.end(),
                               [&](const ChildPlace& child) { return IsNamed(TextOf(child).substr(1), name); });
  return at == children_.end() ? nullptr : &*at;
}

std::string ElementText::Child(std::string_view name) const {
  const ChildPlace* child = Find(name);
  return child == nullptr ? std::string() : std::string(TextOf(*child));
}

std::vector<std::string> ElementText::Children(std::string_view name) const {
  std::vector<std::string> all;
  for (const ChildPlace& child : children_) {
    if (IsNamed(TextOf(child).substr(1), name)) all.emplace_back(TextOf(child));
  }
  return all;
}

std::string ElementText::Content(std::string_view name) const {
  const std::string child = Child(name);
  if (child.empty() || child.ends_with("/>")) return {};
  const std::size_t begin = MarkupEnd(child, 0);
  return child.substr(begin, child.rfind("</") - begin);
}

void ElementText::Exchange(std::size_t begin, std::size_t end, std::string_view text, std::size_t index) {
  text_.replace(begin, end - begin, text);
  for (std::size_t i = index; i < children_.size(); ++i) {
    children_[i].begin += text.size() - (end - begin);
    children_[i].end += text.size() - (end - begin);
  }
}

void ElementText::Cut(std::size_t index) {
  const ChildPlace child = children_[index];
  children_.erase(children_.begin() + static_cast<std::ptrdiff_t>(index));
  Exchange(SpaceBefore(text_, child.begin), child.end, {}, index);
}

void ElementText::Insert(const std::string& child, ElementOrder order) {
  if (children_.empty() && text_.ends_with("/>")) {
    const std::string name(ElementName(text_));
    text_.replace(text_.size() - 2, 2, ">" + child + "</" + name + ">");
    Scan();
    return;
  }
  const std::size_t place = PlaceIn(order, ElementName(child));
  const auto later = std::find_if(children_.begin(), children_.end(), [&](const ChildPlace& other) {
    const std::size_t its = PlaceIn(order, ElementName(TextOf(other)));
    return its != order.size() && its > place;
  });
  const std::size_t at = later != children_.end() ? later->begin : text_.rfind("</");
  const std::string_view layout = children_.empty() ? std::string_view() : Indentation(text_, children_.front().begin);
  const std::string whole = std::string(layout) + child;
  const std::size_t space = SpaceBefore(text_, at);
  const auto index = static_cast<std::size_t>(later - children_.begin());
  const ChildPlace added{space + layout.size(), space + whole.size()};
  Exchange(space, space, whole, index);
  children_.insert(children_.begin() + static_cast<std::ptrdiff_t>(index), added);
}

void ElementText::SetContent(std::string_view name, std::string_view content, ElementOrder order) {
  const ChildPlace* const child = Find(name);
  if (child == nullptr || TextOf(*child).ends_with("/>")) {
    const std::string tag = std::string(name) + ">";
    const std::string whole = ("<" + tag).append(content).append("</") + tag;
    child == nullptr ? Insert(whole, order) : Replace(name, whole);
    return;
  }
  const std::size_t begin = MarkupEnd(text_, child->begin);
  const auto index = static_cast<std::size_t>(child - children_.data());
  const std::size_t end = text_.rfind("</", child->end - 1);
  children_[index].end += content.size() - (end - begin);
  Exchange(begin, end, content, index + 1);
}

void ElementText::Replace(std::string_view name, const std::string& child) {
  const ChildPlace* const place = Find(name);
  if (place == nullptr) return;
  const ChildPlace old = *place;
  const auto index = static_cast<std::size_t>(place - children_.data());
  children_[index] = {old.begin, old.begin + child.size()};
  Exchange(old.begin, old.end, child, index + 1);
}

void ElementText::RemoveAttribute(std::string_view name) {
  const AttributePlace place = FindAttribute(text_, name);
  text_.erase(place.begin, place.end - place.begin);
  Scan();
}

}  // namespace sok
