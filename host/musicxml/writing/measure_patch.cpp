#include "host/musicxml/writing/measure_patch.h"

#include <algorithm>

#include "host/musicxml/text/element_text.h"
#include "host/musicxml/text/markup.h"

namespace sok {
namespace {

// What a note is made of; everything else hangs on it.
constexpr const char* kOwnParts[] = {"rest",       "duration",   "voice",    "type", "dot",       "staff",
                                     "pitch",      "chord",      "stem",     "beam", "unpitched", "time-modification",
                                     "instrument", "accidental", "notehead", "cue",  "grace",     "tie"};

bool IsBlank(std::string_view text) { return std::all_of(text.begin(), text.end(), IsXmlSpace); }

// The duration element for a length, and the length that it says.
std::string Duration(const Fraction& length, const Fraction& divisions, Fraction* written = nullptr) {
  const std::string text = ToDecimal(length * divisions);
  if (written != nullptr) *written = *ParseDecimal(text) / divisions;
  return "<duration>" + text + "</duration>";
}

// Where an element ends: where the white space in front of the next tag begins, when an end tag stands before it.
std::size_t EndOf(const Item& item, std::string_view text, std::size_t next) {
  const std::size_t end = SpaceBefore(text, next);
  const std::size_t tag = text.rfind('<', end - 1);
  const bool its_own = text.substr(tag).starts_with("</") && text.find('>', tag) + 1 == end;
  return its_own ? end : ElementEnd(text, item.begin);
}

bool IsRightBarline(const Item* item) {
  return item != nullptr && Is(item->node.name(), "barline") &&
         Is(item->node.attribute("location").as_string("right"), "right");
}

// A fermata's type is upright unless it says otherwise.
std::string TypeOf(std::string_view fermata) {
  const std::string_view type = AttributeOf(fermata, "type");
  return std::string(type.empty() ? "upright" : type);
}

}  // namespace

MeasurePatch::MeasurePatch(const Model& model, std::string_view text, int part, short measure, const NoteStyle& style)
    : measure_(model, text, part, measure),
      text_(text),
      style_(style),
      content_(MarkupEnd(text, measure_.begin)),
      length_(model.lengths[static_cast<std::size_t>(measure - 1)]) {
  const std::vector<Item>& items = measure_.parts.items;
  pieces_.reserve(items.size());
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Item& item = items[i];
    Piece& piece = pieces_.emplace_back();
    piece.kind = item.kind;
    piece.item = &item;
    piece.end = EndOf(item, text, i + 1 < items.size() ? items[i + 1].begin : text.rfind("</", measure_.end - 1));
    piece.entry = measure_.entries[i];
    piece.chord = item.chord;
    piece.length = item.chord ? Fraction() : item.length;
    piece.divisions = item.divisions;
    piece.before = item.before;
    piece.after = item.after;
  }
}

std::string_view MeasurePatch::TextOf(const Piece& piece) const {
  if (piece.item == nullptr || !piece.text.empty()) return piece.text;
  return text_.substr(piece.item->begin, piece.end - piece.item->begin);
}

void MeasurePatch::Walk() {
  Fraction cursor;
  for (Piece& piece : pieces_) {
    piece.before = cursor;
    if (!piece.gone && piece.kind == ItemKind::kBackup) {
      cursor = cursor < piece.length ? Fraction() : cursor - piece.length;
    } else if (!piece.gone && piece.MovesCursor()) {
      cursor = cursor + piece.length;
    }
    piece.after = cursor;
  }
}

// The next piece in a direction that is still there; `cursor_only` passes over those that do not move the cursor.
std::size_t MeasurePatch::Neighbour(std::size_t index, int step, bool cursor_only) const {
  for (std::size_t i = index + static_cast<std::size_t>(step); i < pieces_.size();
       i += static_cast<std::size_t>(step)) {
    if (!pieces_[i].gone && (!cursor_only || pieces_[i].MovesCursor())) return i;
  }
  return kNone;
}

bool MeasurePatch::NeededLater(std::size_t index) const {
  return std::any_of(pieces_.begin() + static_cast<std::ptrdiff_t>(index) + 1, pieces_.end(),
                     [](const Piece& piece) { return !piece.gone && piece.kind != ItemKind::kStanding; });
}

// Takes out a rest from the first beat together with the moves that lead to it and away from it, when all of it comes
// to nothing.
bool MeasurePatch::RemoveGroup(std::size_t index, Group group) {
  Piece& rest = pieces_[index];
  if (rest.chord || rest.length.IsZero() || !SameLength(rest.before, {})) return false;
  const std::size_t previous = Neighbour(index, -1, false);
  const std::size_t next = Neighbour(index, 1, false);
  // One that would go back beyond the start was not put in with a rest.
  const auto is_backup = [&](std::size_t i) {
    return i != kNone && pieces_[i].kind == ItemKind::kBackup && !pieces_[i].length.IsZero() &&
           SameLength(pieces_[i].before, pieces_[i].after + pieces_[i].length);
  };
  const bool back_to = is_backup(previous);
  const bool back_from = is_backup(next);
  switch (group) {
    case Group::kBetweenMoves:
      rest.gone = back_to && back_from && SameLength(rest.length, length_) &&
                  SameLength(pieces_[previous].before, pieces_[next].after) &&
                  !SameLength(pieces_[next].after, rest.after);
      break;
    case Group::kAndBack:
      rest.gone = back_from && SameLength(pieces_[next].after, rest.before);
      break;
    case Group::kBackAnd:
      rest.gone = back_to && SameLength(pieces_[previous].before, rest.after);
      break;
  }
  if (rest.gone && group != Group::kAndBack) pieces_[previous].gone = true;
  if (rest.gone && group != Group::kBackAnd) pieces_[next].gone = true;
  return rest.gone;
}

void MeasurePatch::RemoveNote(std::size_t index) {
  Piece& piece = pieces_[index];
  if (piece.chord || piece.length.IsZero() || !NeededLater(index)) {
    piece.gone = true;
    return;
  }
  const std::string duration = ElementText(TextOf(piece)).Child("duration");
  piece.text = style_.Format(Indentation(text_, piece.item->begin), "forward",
                             {duration.empty() ? Duration(piece.length, piece.divisions) : duration});
  piece.kind = ItemKind::kForward;
}

// Groups go first, those that can be told best before others, so that what was put in leaves the text of before. What
// remains goes from its end on, as whether a note is needed depends on what is behind it.
void MeasurePatch::Remove(const std::vector<EntryRange>& voices) {
  const auto range_of = [&](const Piece& piece) {
    return piece.gone || piece.kind != ItemKind::kNote
               ? voices.end()
               : std::find_if(voices.begin(), voices.end(), [&](const EntryRange& v) { return v.Holds(piece.entry); });
  };
  const auto is_lone = [&](const EntryRange& voice) {
    return std::count_if(pieces_.begin(), pieces_.end(), [&](const Piece& p) { return voice.Holds(p.entry); }) == 1;
  };
  const auto remove_group = [&] {
    for (const Group group : {Group::kBetweenMoves, Group::kAndBack, Group::kBackAnd}) {
      for (std::size_t i = 0; i < pieces_.size(); ++i) {
        const auto range = range_of(pieces_[i]);
        if (range != voices.end() && is_lone(*range) && RemoveGroup(i, group)) return true;
      }
    }
    return false;
  };
  while (remove_group()) Walk();
  for (std::size_t i = pieces_.size(); i-- > 0;) {
    if (range_of(pieces_[i]) != voices.end()) RemoveNote(i);
  }
  Walk();
}

void MeasurePatch::Show(const EntryRange& voice) {
  for (Piece& piece : pieces_) {
    if (!voice.Holds(piece.entry)) continue;
    ElementText note(TextOf(piece));
    note.RemoveAttribute("print-object");
    piece.text = note.text();
  }
}

std::vector<std::string> MeasurePatch::Attached(const EntryRange& voice) const {
  std::vector<std::string> names;
  const auto add = [&](const char* name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
  };
  for (const Piece& piece : pieces_) {
    if (!voice.Holds(piece.entry) || piece.item == nullptr) continue;
    for (const pugi::xml_node child : piece.item->node.children()) {
      if (Is(child.name(), "notations")) {
        for (const pugi::xml_node notation : child.children()) add(notation.name());
      } else if (std::none_of(std::begin(kOwnParts), std::end(kOwnParts),
                              [&](const char* own) { return Is(child.name(), own); })) {
        add(child.name());
      }
    }
  }
  std::stable_partition(names.begin(), names.end(), [](const std::string& name) { return name == "fermata"; });
  return names;
}

Fraction MeasurePatch::DivisionsAt(std::size_t index) const {
  return index > 0 ? pieces_[index - 1].divisions : measure_.cell.divisions;
}

std::string_view MeasurePatch::IndentationAt(std::size_t index) const {
  for (std::size_t i = index; i-- > 0;) {
    if (pieces_[i].item != nullptr) return Indentation(text_, pieces_[i].item->begin);
  }
  if (!pieces_.empty() && pieces_[0].item != nullptr) return Indentation(text_, pieces_[0].item->begin);
  return style_.indent;
}

void MeasurePatch::Add(std::size_t index, ItemKind kind, const Fraction& length, const std::string& name,
                       const std::vector<std::string>& children) {
  const std::string_view indentation = IndentationAt(index);
  Piece piece;
  piece.kind = kind;
  piece.length = length;
  piece.text = std::string(indentation) + style_.Format(indentation, name, children);
  piece.divisions = DivisionsAt(index);
  pieces_.insert(pieces_.begin() + static_cast<std::ptrdiff_t>(index), std::move(piece));
}

// A <backup> or <forward> from one place to another; nothing when they are the same.
void MeasurePatch::AddMove(std::size_t index, const Fraction& from, const Fraction& to) {
  if (SameLength(from, to)) return;
  const bool back = to < from;
  const Fraction length = back ? from - to : to - from;
  Add(index, back ? ItemKind::kBackup : ItemKind::kForward, length, back ? "backup" : "forward",
      {Duration(length, DivisionsAt(index))});
}

// A <forward> that is all of one pass through the measure: time that passes where the rest goes.
std::size_t MeasurePatch::WaitingForward(const NewRest& rest) const {
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (piece.gone || piece.kind != ItemKind::kForward || piece.item == nullptr || !piece.text.empty()) continue;
    if (!SameLength(piece.before, {}) || !SameLength(piece.length, rest.length)) continue;
    const pugi::xml_node staff = piece.item->node.child("staff");
    if (staff && StaffNumber(staff) != std::max(rest.staff, 1)) continue;
    const std::size_t previous = Neighbour(i, -1, true);
    const std::size_t next = Neighbour(i, 1, true);
    if (previous != kNone && pieces_[previous].kind != ItemKind::kBackup) continue;
    if (next == kNone || pieces_[next].kind == ItemKind::kBackup) return i;
  }
  return kNone;
}

// In front of the first note of a lower staff, as scores are written, but behind the notes of the staff itself and of
// upper ones. Only where the measure is at its start.
std::size_t MeasurePatch::BeforeLowerStaves(int staff) const {
  std::size_t own_end = 0;
  std::size_t next = kNone;  // note of a lower staff
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    const Piece& piece = pieces_[i];
    if (piece.gone || piece.kind != ItemKind::kNote) continue;
    const bool lower = piece.item != nullptr && piece.item->staff > staff;
    if (!lower) own_end = i + 1;
    if (!lower) next = kNone;
    if (lower && next == kNone) next = i;
  }
  if (staff == 0 || next == kNone) return kNone;
  for (std::size_t i = own_end; i <= next; ++i) {
    const Piece& piece = pieces_[i];
    const bool starts = own_end == 0 ? piece.MovesCursor() && !piece.gone : i > own_end && pieces_[i - 1].MovesCursor();
    if (starts && SameLength(piece.before, {})) return i;
  }
  return kNone;
}

// Behind what moves the cursor last; without that before a right barline, but behind everything at the first beat.
std::size_t MeasurePatch::EndOfMeasure() const {
  const std::size_t last = LastMover();
  if (last != kNone) return last + 1;
  std::size_t at = pieces_.size();
  while (at > 0 && IsRightBarline(pieces_[at - 1].item)) --at;
  return at;
}

std::size_t MeasurePatch::PlaceOfNewVoice(int staff) const {
  const std::size_t place = BeforeLowerStaves(staff);
  return place != kNone ? place : EndOfMeasure();
}

void MeasurePatch::InsertAtStart(std::size_t index, const NewRest& rest) {
  const Fraction divisions = DivisionsAt(index);
  Fraction length;
  const std::string duration = Duration(rest.length, divisions, &length);
  Add(index, ItemKind::kBackup, length, "backup", {duration});
  Add(index, ItemKind::kNote, length, "note", RestParts(rest, duration));
}

void MeasurePatch::InsertAtEnd(const NewRest& rest) {
  std::size_t at = EndOfMeasure();
  const bool first = LastMover() == kNone;
  const Fraction cursor = first || SameLength(pieces_[at - 1].after, {}) ? Fraction() : pieces_[at - 1].after;
  const std::size_t before = pieces_.size();
  AddMove(at, cursor, {});
  at += pieces_.size() - before;
  Fraction length;
  const std::string duration = Duration(rest.length, DivisionsAt(at), &length);
  Add(at, ItemKind::kNote, length, "note", RestParts(rest, duration));
  if (!first) AddMove(at + 1, length, cursor);
}

std::vector<std::string> MeasurePatch::RestParts(const NewRest& rest, const std::string& duration) {
  std::vector<std::string> children = {"<rest measure=\"yes\"/>", duration};
  if (!rest.voice.empty()) children.push_back("<voice>" + Escaped(rest.voice) + "</voice>");
  if (rest.staff > 0) children.push_back("<staff>" + std::to_string(rest.staff) + "</staff>");
  return children;
}

void MeasurePatch::Insert(const NewRest& rest) {
  std::size_t place = rest.own_voice ? kNone : WaitingForward(rest);
  if (place == kNone) place = BeforeLowerStaves(rest.staff);
  place != kNone ? InsertAtStart(place, rest) : InsertAtEnd(rest);
  Walk();
}

void MeasurePatch::MoveFermatas(const EntryRange& voice) {
  for (std::size_t i = 0; i < pieces_.size(); ++i) {
    if (!voice.Holds(pieces_[i].entry)) continue;
    for (const std::string& notations : ElementText(TextOf(pieces_[i])).Children("notations")) {
      for (const std::string& fermata : ElementText(notations).Children("fermata")) MoveFermata(fermata);
    }
  }
}

void MeasurePatch::MoveFermata(const std::string& fermata) {
  if (!fermatas_moved_.insert(TypeOf(fermata)).second) return;
  const auto barline = std::find_if(pieces_.rbegin(), pieces_.rend(), [](const Piece& piece) {
    return piece.kind == ItemKind::kStanding && (piece.item == nullptr || IsRightBarline(piece.item));
  });
  if (barline == pieces_.rend()) {
    Add(pieces_.size(), ItemKind::kStanding, {}, "barline", {fermata});
    std::string& added = pieces_.back().text;
    added.replace(added.find("<barline>"), 9, "<barline location=\"right\">");
    return;
  }
  const std::string text(TextOf(*barline));
  const std::size_t begin = text.find('<');  // an added one brings its indentation
  ElementText whole(text.substr(begin));
  for (const std::string& other : whole.Children("fermata")) {
    if (TypeOf(other) == TypeOf(fermata)) return;
  }
  whole.Insert(fermata, kBarlineOrder);
  barline->text = text.substr(0, begin) + whole.text();
}

// The measure has nothing in it any more, but had: it takes XML's short form.
bool MeasurePatch::NothingLeft() const {
  std::size_t from = content_;
  for (const Piece& piece : pieces_) {
    if (!piece.gone || piece.item == nullptr || !IsBlank(text_.substr(from, piece.item->begin - from))) return false;
    from = piece.end;
  }
  return !pieces_.empty() && IsBlank(text_.substr(from, text_.rfind("</", measure_.end - 1) - from));
}

void MeasurePatch::AppendTo(std::string& text) const {
  std::size_t from = measure_.begin;
  const auto keep = [&](std::size_t to) {
    text.append(text_, from, to - from);
    from = to;
  };
  if (content_ == measure_.end) {  // an empty-element tag
    std::string added;
    for (const Piece& piece : pieces_) added += piece.gone ? "" : piece.text;
    if (added.empty()) return keep(measure_.end);
    keep(measure_.end - 2);
    text.append(">").append(added).append(Indentation(text_, measure_.begin));
    text.append("</").append(ElementName(text_.substr(measure_.begin))).append(">");
    return;
  }
  if (NothingLeft()) {
    keep(content_ - 1);
    text += "/>";
    return;
  }
  std::size_t anchor = content_;  // where added pieces stand
  for (const Piece& piece : pieces_) {
    if (piece.item == nullptr) {
      if (piece.gone) continue;
      keep(anchor);
      text += piece.text;
      continue;
    }
    anchor = piece.end;
    if (!piece.gone && piece.text.empty()) continue;
    keep(piece.gone ? SpaceBefore(text_, piece.item->begin) : piece.item->begin);
    if (!piece.gone) text += piece.text;
    from = piece.end;
  }
  keep(measure_.end);
}

}  // namespace sok
