#include "host/musicxml/cell_edit.h"

#include <algorithm>
#include <cstring>

#include "host/musicxml/cell_reader.h"
#include "host/musicxml/markup.h"

namespace sok {
namespace {

bool Is(const char* name, const char* other) { return std::strcmp(name, other) == 0; }

std::string Trimmed(const char* text) {
  std::string_view view = text;
  while (!view.empty() && IsXmlSpace(view.front())) view.remove_prefix(1);
  while (!view.empty() && IsXmlSpace(view.back())) view.remove_suffix(1);
  return std::string(view);
}

bool IsBlank(std::string_view text) { return std::all_of(text.begin(), text.end(), IsXmlSpace); }

}  // namespace

CellEdit::CellEdit(std::string_view text, std::size_t offset, const Fraction& divisions, const NoteStyle& style)
    : text_(text), offset_(offset), divisions_(divisions), style_(style) {
  end_ = ElementEnd(text, offset);
  content_ = MarkupEnd(text, offset);
  empty_tag_ = content_ == end_;
  document_.load_buffer(text.data() + offset, end_ - offset, pugi::parse_escapes, pugi::encoding_utf8);
  Fraction in_force = divisions;
  for (const pugi::xml_node node : document_.document_element().children()) {
    if (node.type() == pugi::node_element) ReadItem(node, in_force);
  }
  Walk();
}

std::size_t CellEdit::BeginOf(pugi::xml_node node) const {
  return offset_ + static_cast<std::size_t>(node.offset_debug()) - 1;
}

std::string_view CellEdit::TextOf(pugi::xml_node node) const {
  const std::size_t begin = BeginOf(node);
  return text_.substr(begin, ElementEnd(text_, begin) - begin);
}

void CellEdit::ReadItem(pugi::xml_node node, Fraction& divisions) {
  Item item;
  const char* name = node.name();
  item.node = node;
  item.begin = BeginOf(node);
  item.end = ElementEnd(text_, item.begin);
  const auto duration = ParseDecimal(node.child_value("duration"));
  if (duration && duration->numerator > 0) item.length = *duration / divisions;
  if (Is(name, "note")) {
    item.kind = Kind::kNote;
    if (!node.child("duration")) item.length = {WrittenDurationOf(node), 1024};
    const auto before =
        std::find_if(items_.rbegin(), items_.rend(), [](const Item& other) { return MovesCursor(other); });
    item.chord = node.child("chord") && before != items_.rend() && before->kind == Kind::kNote;
    item.voice = Trimmed(node.child_value("voice"));
    item.staff = std::max(StaffNumber(node.child("staff")), 1);
    if (node.child("grace")) item.length = {};
    if (item.chord) {
      item.length = {};
      item.voice = before->voice;
      item.staff = before->staff;
    }
  } else if (Is(name, "backup")) {
    item.kind = Kind::kBackup;
  } else if (Is(name, "forward")) {
    item.kind = Kind::kForward;
  } else if (Is(name, "barline") || Is(name, "print") || Is(name, "grouping") || Is(name, "link") ||
             Is(name, "bookmark")) {
    item.kind = Kind::kStanding;
  } else {
    item.kind = Kind::kPlaced;
    const auto changed = ParseDecimal(node.child_value("divisions"));
    if (changed && changed->numerator > 0) divisions = *changed;
  }
  item.divisions = divisions;
  items_.push_back(std::move(item));
}

bool CellEdit::MovesCursor(const Item& item) {
  return item.kind == Kind::kNote || item.kind == Kind::kBackup || item.kind == Kind::kForward;
}

void CellEdit::Walk() {
  Fraction cursor;
  for (Item& item : items_) {
    item.before = cursor;
    if (!item.gone && item.kind == Kind::kBackup)
      cursor = cursor < item.length ? Fraction() : cursor - item.length;
    else if (!item.gone && MovesCursor(item))
      cursor = cursor + item.length;
    item.after = cursor;
  }
}

// The next item in a direction that is still there; `cursor_only` passes over those that do not move the cursor.
std::size_t CellEdit::Neighbour(std::size_t index, int step, bool cursor_only) const {
  for (std::size_t i = index + static_cast<std::size_t>(step); i < items_.size(); i += static_cast<std::size_t>(step)) {
    if (!items_[i].gone && (!cursor_only || MovesCursor(items_[i]))) return i;
  }
  return kNone;
}

std::size_t CellEdit::LastMover() const { return Neighbour(items_.size(), -1, true); }

bool CellEdit::NeededLater(std::size_t index) const {
  return std::any_of(items_.begin() + static_cast<std::ptrdiff_t>(index) + 1, items_.end(),
                     [](const Item& item) { return !item.gone && item.kind != Kind::kStanding; });
}

// A rest from the first beat together with the moves that lead to it and away from it, when all of it comes to nothing.
bool CellEdit::RemoveGroup(std::size_t index) {
  Item& rest = items_[index];
  const std::size_t previous = Neighbour(index, -1, false);
  const std::size_t next = Neighbour(index, 1, false);
  const auto is = [&](std::size_t i, Kind kind) { return i != kNone && items_[i].kind == kind; };
  const bool next_undoes = is(next, Kind::kBackup) && SameLength(items_[next].after, rest.before);
  if (next_undoes && next == LastMover()) {
    rest.gone = items_[next].gone = true;
  } else if (is(previous, Kind::kBackup) && SameLength(items_[previous].before, rest.after)) {
    rest.gone = items_[previous].gone = true;
  } else if (is(previous, Kind::kBackup) && (is(next, Kind::kBackup) || is(next, Kind::kForward)) &&
             SameLength(items_[previous].before, items_[next].after)) {
    rest.gone = items_[previous].gone = items_[next].gone = true;
  } else if (next_undoes) {
    rest.gone = items_[next].gone = true;
  }
  return rest.gone;
}

void CellEdit::RemoveNote(std::size_t index, bool lone) {
  Item& item = items_[index];
  if (item.chord || item.length.IsZero()) {
    item.gone = true;
  } else if (lone && RestoreForward(item)) {
    item.kind = Kind::kForward;
  } else if (lone && SameLength(item.before, {}) && RemoveGroup(index)) {
    Walk();
  } else if (NeededLater(index)) {
    const pugi::xml_node duration = item.node.child("duration");
    Fraction written;
    item.replacement =
        style_.Format(Indentation(text_, item.begin), "forward",
                      {duration ? std::string(TextOf(duration)) : Duration(item.length, item.divisions, written)});
    item.kind = Kind::kForward;
  } else {
    item.gone = true;
    Walk();
  }
}

void CellEdit::Remove(const Selector& selects) {
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < items_.size(); ++i) {
    const Item& item = items_[i];
    if (item.kind == Kind::kNote && !item.gone && selects(item.voice, item.staff)) found.push_back(i);
  }
  for (auto at = found.rbegin(); at != found.rend(); ++at) RemoveNote(*at, found.size() == 1);
}

void CellEdit::Articulate(const Selector& selects, std::size_t index, const std::vector<std::string>& articulations) {
  for (Item& item : items_) {
    if (item.kind != Kind::kNote || item.chord || !selects(item.voice, item.staff) || index-- > 0) continue;
    const pugi::xml_node notations = item.node.child("notations");
    const pugi::xml_node there = notations.child("articulations");
    std::string content;
    for (const std::string& articulation : articulations) {
      if (!there.child(articulation.c_str())) content.append("<").append(articulation).append("/>");
    }
    if (content.empty()) return;
    if (!there) content = "<articulations>" + content + "</articulations>";
    if (!notations) content = "<notations>" + content + "</notations>";

    const pugi::xml_node place = there ? there : notations ? notations : item.node;
    std::string whole(TextOf(item.node));
    const std::size_t begin = BeginOf(place) - item.begin;
    const std::size_t end = begin + TextOf(place).size();
    if (whole[end - 2] == '/') {
      whole.replace(end - 2, 2, ">" + content + "</" + place.name() + ">");
    } else {
      std::size_t at = whole.rfind("</", end - 1);
      for (const char* later : {"listen", "play", "lyric"}) {  // stand behind the notations of a note
        if (place == item.node && place.child(later)) at = BeginOf(place.child(later)) - item.begin;
      }
      whole.insert(SpaceBefore(whole, at), std::string(Indentation(text_, BeginOf(place.first_child()))) + content);
    }
    item.replacement = whole;
    return;
  }
}

std::vector<std::string> CellEdit::Attached(const Selector& selects) const {
  constexpr const char* kOwn[] = {"rest",       "duration",   "voice",    "type", "dot",       "staff",
                                  "pitch",      "chord",      "stem",     "beam", "unpitched", "time-modification",
                                  "instrument", "accidental", "notehead", "cue",  "grace",     "tie"};
  std::vector<std::string> names;
  const auto add = [&](const char* name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
  };
  for (const Item& item : items_) {
    if (item.kind != Kind::kNote || !selects(item.voice, item.staff)) continue;
    for (const pugi::xml_node child : item.node.children()) {
      if (Is(child.name(), "notations")) {
        for (const pugi::xml_node notation : child.children()) add(notation.name());
      } else if (std::none_of(std::begin(kOwn), std::end(kOwn),
                              [&](const char* own) { return Is(child.name(), own); })) {
        add(child.name());
      }
    }
  }
  std::stable_partition(names.begin(), names.end(), [](const std::string& name) { return name == "fermata"; });
  return names;
}

// The duration element for a length, and the length that it says.
std::string CellEdit::Duration(const Fraction& length, const Fraction& divisions, Fraction& written) const {
  const std::string text = ToDecimal(Reduced(length * divisions));
  written = *ParseDecimal(text) / divisions;
  return "<duration>" + text + "</duration>";
}

std::string_view CellEdit::IndentationAt(std::size_t index) const {
  for (std::size_t i = index; i-- > 0;) {
    if (items_[i].node) return Indentation(text_, items_[i].begin);
  }
  if (!items_.empty() && items_[0].node) return Indentation(text_, items_[0].begin);
  return style_.indent;
}

void CellEdit::Add(std::size_t index, Kind kind, const Fraction& length, const std::vector<std::string>& children) {
  const std::string_view indentation = IndentationAt(index);
  const char* name = kind == Kind::kNote      ? "note"
                     : kind == Kind::kBackup  ? "backup"
                     : kind == Kind::kForward ? "forward"
                                              : "barline";
  Item item;
  item.kind = kind;
  item.length = length;
  item.replacement = std::string(indentation) + style_.Format(indentation, name, children);
  if (kind == Kind::kStanding) {  // the only other element that is added carries an attribute
    item.replacement.replace(item.replacement.find("<barline>"), 9, "<barline location=\"right\">");
  }
  item.divisions = index > 0 ? items_[index - 1].divisions : divisions_;
  items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::move(item));
}

void CellEdit::Insert(const NewRest& rest) {
  if (!rest.own_voice && TakeForwardsPlace(rest)) {
    Walk();
    return;
  }
  const std::size_t last = LastMover();
  std::size_t at = last + 1;
  if (last == kNone) {  // before a right barline, but behind everything that stands at the first beat
    at = items_.size();
    while (at > 0 && items_[at - 1].kind == Kind::kStanding && Is(items_[at - 1].node.name(), "barline") &&
           !Is(items_[at - 1].node.attribute("location").value(), "left")) {
      --at;
    }
  }
  const Fraction divisions = at > 0 ? items_[at - 1].divisions : divisions_;
  const Fraction cursor = last == kNone || SameLength(items_[last].after, {}) ? Fraction() : items_[last].after;
  Fraction length;
  std::vector<std::string> children = {"<rest measure=\"yes\"/>", Duration(rest.length, divisions, length)};
  if (!rest.voice.empty()) children.push_back("<voice>" + Escaped(rest.voice) + "</voice>");
  if (rest.staff > 0) children.push_back("<staff>" + std::to_string(rest.staff) + "</staff>");
  Fraction ignored;
  if (!cursor.IsZero()) Add(at++, Kind::kBackup, cursor, {Duration(cursor, divisions, ignored)});
  Add(at++, Kind::kNote, length, children);
  if (last != kNone && !SameLength(cursor, length)) {
    const Fraction back = cursor < length ? length - cursor : cursor - length;
    Add(at, cursor < length ? Kind::kBackup : Kind::kForward, back, {Duration(back, divisions, ignored)});
  }
  Walk();
}

// A <forward> that is all of one pass through the measure becomes the rest.
bool CellEdit::TakeForwardsPlace(const NewRest& rest) {
  for (std::size_t i = 0; i < items_.size(); ++i) {
    Item& item = items_[i];
    if (item.gone || item.kind != Kind::kForward || !item.node || !item.replacement.empty() ||
        !SameLength(item.before, {}))
      continue;
    if (!SameLength(item.length, rest.length)) continue;
    const std::size_t previous = Neighbour(i, -1, true);
    const std::size_t next = Neighbour(i, 1, true);
    if (previous != kNone && items_[previous].kind != Kind::kBackup) continue;
    if (next != kNone && items_[next].kind != Kind::kBackup) continue;
    item.replacement = AsRest(item, rest);
    if (item.replacement.empty()) continue;
    item.kind = Kind::kNote;
    return true;
  }
  return false;
}

// Empty when the <forward> has more in it than a rest can take over.
std::string CellEdit::AsRest(const Item& forward, const NewRest& rest) const {
  const std::string_view whole = TextOf(forward.node);
  if (!whole.starts_with("<forward>") || !whole.ends_with("</forward>")) return {};
  for (const char* const odd : {"<!", "<?", " >"}) {  // the last would be taken for a mark of our own
    if (whole.find(odd) != std::string_view::npos) return {};
  }
  const pugi::xml_node duration = forward.node.child("duration");
  const pugi::xml_node voice = forward.node.child("voice");
  const pugi::xml_node staff = forward.node.child("staff");
  int children = 0;
  for (const pugi::xml_node child : forward.node.children()) children += child.type() == pugi::node_element ? 1 : 0;
  if (duration != forward.node.first_child() || children != 1 + (voice ? 1 : 0) + (staff ? 1 : 0)) return {};
  if (voice && (rest.voice.empty() || Trimmed(voice.child_value()) != rest.voice)) return {};
  if (staff && StaffNumber(staff) != std::max(rest.staff, 1)) return {};

  const std::size_t body = forward.begin + std::strlen("<forward>");
  const std::string space(text_.substr(body, BeginOf(duration) - body));
  const auto end_of = [&](pugi::xml_node node) { return BeginOf(node) + TextOf(node).size(); };
  std::string result = "<note>" + space + "<rest measure=\"yes\"/>";
  std::size_t from = body;
  result += text_.substr(from, end_of(duration) - from);
  from = end_of(duration);
  if (voice) {
    result += text_.substr(from, end_of(voice) - from);
    from = end_of(voice);
  } else if (!rest.voice.empty()) {
    result += space + "<voice>" + Escaped(rest.voice) + "</voice >";
  }
  if (!staff && rest.staff > 0) result += space + "<staff>" + std::to_string(rest.staff) + "</staff >";
  result += text_.substr(from, forward.end - std::strlen("</forward>") - from);
  return result + "</note >";
}

bool CellEdit::RestoreForward(Item& item) const {
  std::string whole(TextOf(item.node));
  if (!whole.starts_with("<note>") || !whole.ends_with("</note >") || !item.node.child("duration")) return false;
  const auto cut = [&](pugi::xml_node node) {  // with the white space before it
    const std::size_t at = whole.find(TextOf(node));
    const std::size_t begin = SpaceBefore(whole, at);
    whole.erase(begin, at - begin + TextOf(node).size());
  };
  for (const char* name : {"staff", "voice"}) {
    const pugi::xml_node child = item.node.child(name);
    if (child && TextOf(child).ends_with(" >")) cut(child);
  }
  cut(item.node.child("rest"));
  item.replacement = "<forward" + whole.substr(5, whole.size() - 5 - 8) + "</forward>";
  return true;
}

void CellEdit::MoveFermatas(const Selector& selects) {
  std::vector<pugi::xml_node> fermatas;
  for (const Item& item : items_) {
    if (item.kind != Kind::kNote || !selects(item.voice, item.staff)) continue;
    for (const pugi::xml_node notations : item.node.children("notations")) {
      for (const pugi::xml_node fermata : notations.children("fermata")) fermatas.push_back(fermata);
    }
  }
  const auto type_of = [](pugi::xml_node fermata) {
    return std::string(fermata.attribute("type").as_string("upright"));
  };
  for (const pugi::xml_node fermata : fermatas) {
    std::size_t barline = kNone;
    for (std::size_t i = 0; i < items_.size(); ++i) {
      const Item& item = items_[i];
      if (item.node && Is(item.node.name(), "barline") &&
          Is(item.node.attribute("location").as_string("right"), "right"))
        barline = i;
    }
    const std::string text(TextOf(fermata));
    if (!fermatas_moved_.insert(type_of(fermata)).second) continue;
    if (barline == kNone) {
      const auto added = std::find_if(items_.begin(), items_.end(),
                                      [](const Item& item) { return !item.node && item.kind == Kind::kStanding; });
      if (added == items_.end())
        Add(items_.size(), Kind::kStanding, {}, {text});
      else
        added->replacement.insert(added->replacement.rfind("</barline>"), text);
      continue;
    }
    Item& item = items_[barline];
    const pugi::xml_node node = item.node;
    bool known = false;
    for (const pugi::xml_node other : node.children("fermata")) known = known || type_of(other) == type_of(fermata);
    if (known) continue;
    std::size_t at = kNone;  // in the barline, before what the order of elements puts behind a fermata
    for (const char* later : {"ending", "repeat"}) {
      if (at == kNone && node.child(later)) at = BeginOf(node.child(later)) - item.begin;
    }
    std::string whole = item.replacement.empty() ? std::string(TextOf(node)) : item.replacement;
    const std::size_t grown = whole.size() - TextOf(node).size();
    if (at != kNone) {
      whole.insert(at + grown, text);
    } else if (whole.ends_with("/>")) {
      whole.replace(whole.size() - 2, 2, ">" + text + "</barline>");
    } else {
      whole.insert(SpaceBefore(whole, whole.rfind("</")), text);
    }
    item.replacement = whole;
  }
}

std::string CellEdit::Added() const {
  std::string result;
  for (const Item& item : items_) {
    if (!item.node && !item.gone) result += item.replacement;
  }
  return result;
}

std::vector<Splice> CellEdit::Splices() const {
  if (empty_tag_) {
    const std::string added = Added();
    if (added.empty()) return {};
    const std::string name = document_.document_element().name();
    return {{end_ - 2, end_, ">" + added + std::string(Indentation(text_, offset_)) + "</" + name + " >"}};
  }
  const std::size_t close = text_.rfind("</", end_ - 1);
  const bool nothing_left = std::all_of(items_.begin(), items_.end(), [](const Item& item) { return item.gone; });
  if (nothing_left && text_[end_ - 2] == ' ') {
    bool blank = true;
    std::size_t from = content_;
    for (const Item& item : items_) {
      if (!item.node) continue;
      blank = blank && IsBlank(text_.substr(from, item.begin - from));
      from = item.end;
    }
    if (blank && IsBlank(text_.substr(from, close - from))) return {{content_ - 1, end_, "/>"}};
  }
  std::vector<Splice> splices;
  std::size_t anchor = content_;
  for (const Item& item : items_) {
    if (!item.node) {
      if (!item.gone) splices.push_back({anchor, anchor, item.replacement});
      continue;
    }
    anchor = item.end;
    if (item.gone)
      splices.push_back({SpaceBefore(text_, item.begin), item.end, {}});
    else if (!item.replacement.empty())
      splices.push_back({item.begin, item.end, item.replacement});
  }
  return splices;
}

}  // namespace sok
