#include "host/musicxml/reading/measure_items.h"

#include <algorithm>

#include "host/musicxml/text/markup.h"

namespace sok {
namespace {

constexpr int kGraceDuration = 512;  // of a grace note without a type
constexpr int kMostDots = 4;         // that a value is written with

struct NoteType {
  std::string_view name;
  int duration;
};
constexpr NoteType kNoteTypes[] = {
    {"quarter", 1024}, {"eighth", 512}, {"16th", 256},   {"half", 2048},    {"whole", 4096},
    {"32nd", 128},     {"64th", 64},    {"128th", 32},   {"256th", 16},     {"512th", 8},
    {"1024th", 4},     {"breve", 8192}, {"long", 16384}, {"maxima", 32768},
};

int WithDots(int duration, int dots) {
  for (int add = duration / 2; dots > 0 && add > 0; --dots, add /= 2) duration += add;
  return std::min(duration, 65535);
}

// What the children of a note tell, as they come.
struct NoteParts {
  Item& item;
  std::string_view type;
  int dots = 0;
  const char* duration = nullptr;
  bool chord = false;
  bool odd_staff = false;
};

int StepsFromMiddleC(std::string_view step, int octave) {
  constexpr std::string_view kSteps = "CDEFGAB";
  const std::size_t index = step.size() == 1 ? kSteps.find(step[0]) : std::string_view::npos;
  return index == std::string_view::npos ? 0 : static_cast<int>(index) + 7 * (octave - 4);
}

std::int16_t ToShort(int value) { return static_cast<std::int16_t>(std::clamp(value, -32767, 32767)); }

void Flag(NoteParts& note, int flag) {
  note.item.entry.flags = static_cast<std::uint8_t>(note.item.entry.flags | flag);
}

// Backwards, as the first child of a name is the one that counts.
void ReadPitch(pugi::xml_node node, NoteParts& note) {
  std::string_view step;
  int octave = 0;
  for (pugi::xml_node child = node.last_child(); child; child = child.previous_sibling()) {
    const char* const name = child.name();
    if (Is(name, "step")) {
      step = Trimmed(child.child_value());
    } else if (Is(name, "octave")) {
      octave = SmallNumber(child.child_value());
    } else if (Is(name, "alter")) {
      const Fraction alter = ParseDecimal(child.child_value()).value_or(Fraction());
      note.item.pitch.alter = static_cast<std::int8_t>(alter.numerator / alter.denominator % 100);
    }
  }
  note.item.pitch.step = ToShort(StepsFromMiddleC(step, octave));
}

// Whether the element says where on the staff it stands, which becomes the note's step.
bool ReadPlace(pugi::xml_node node, NoteParts& note) {
  const std::string_view step = Trimmed(node.child_value("display-step"));
  if (step.empty()) return false;
  note.item.pitch.step = ToShort(StepsFromMiddleC(step, SmallNumber(node.child_value("display-octave"))));
  return true;
}

void ReadUnpitched(pugi::xml_node node, NoteParts& note) {
  constexpr std::int16_t kMiddleOfTheStaff = 6;
  if (!ReadPlace(node, note)) note.item.pitch.step = kMiddleOfTheStaff;
}

void ReadDuration(pugi::xml_node node, NoteParts& note) {
  if (note.duration == nullptr) note.duration = node.child_value();
}

void ReadRest(pugi::xml_node node, NoteParts& note) {
  Flag(note, kRest | (Is(node.attribute("measure").value(), "yes") ? kBarRest : 0));
  if (node.first_child() && ReadPlace(node, note)) Flag(note, kPlaced);
}

void ReadType(pugi::xml_node node, NoteParts& note) {
  note.type = Trimmed(node.child_value());
  if (Is(node.attribute("size").value(), "cue")) Flag(note, kCue);
}

void ReadTie(pugi::xml_node node, NoteParts& note) {
  const bool starts = Is(node.attribute("type").value(), "start");
  note.item.pitch.ties = static_cast<std::uint8_t>(note.item.pitch.ties | (starts ? kTieStart : kTieStop));
}

void ReadStaff(pugi::xml_node node, NoteParts& note) {
  note.item.staff = StaffNumber(node);
  note.odd_staff = note.item.staff == 0;
  if (note.odd_staff) note.item.staff = 1;
}

void ReadNotations(pugi::xml_node node, NoteParts& note) {
  note.item.has_notations = true;
  if (node.child("fermata")) Flag(note, kFermata);
}

// The children that count, the most frequent first.
constexpr struct {
  const char* name;
  void (*read)(pugi::xml_node, NoteParts&);
} kNoteParts[] = {
    {"pitch", ReadPitch},
    {"duration", ReadDuration},
    {"voice", [](pugi::xml_node node, NoteParts& note) { note.item.voice = Trimmed(node.child_value()); }},
    {"type", ReadType},
    {"staff", ReadStaff},
    {"notations", ReadNotations},
    {"chord", [](pugi::xml_node, NoteParts& note) { note.chord = true; }},
    {"dot", [](pugi::xml_node, NoteParts& note) { ++note.dots; }},
    {"rest", ReadRest},
    {"tie", ReadTie},
    {"grace", [](pugi::xml_node, NoteParts& note) { Flag(note, kGrace); }},
    {"cue", [](pugi::xml_node, NoteParts& note) { Flag(note, kCue); }},
    {"unpitched", ReadUnpitched},
    {"time-modification", [](pugi::xml_node, NoteParts& note) { note.item.in_tuplet = true; }},
};

constexpr const char* kStanding[] = {"barline", "print", "grouping", "link", "bookmark"};

ItemKind KindOf(const char* name) {
  if (Is(name, "note")) return ItemKind::kNote;
  if (Is(name, "backup")) return ItemKind::kBackup;
  if (Is(name, "forward")) return ItemKind::kForward;
  const bool stands =
      std::any_of(std::begin(kStanding), std::end(kStanding), [&](const char* each) { return Is(name, each); });
  return stands ? ItemKind::kStanding : ItemKind::kPlaced;
}

}  // namespace

int SmallNumber(std::string_view text) {
  text = Trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  int value = 0;
  if (text.empty() || text.size() > 6) return 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return 0;
    value = value * 10 + (c - '0');
  }
  return negative ? -value : value;
}

int WrittenDuration(std::string_view type, int dots) {
  const auto* const row = std::find_if(std::begin(kNoteTypes), std::end(kNoteTypes),
                                       [&](const NoteType& each) { return each.name == type; });
  return row == std::end(kNoteTypes) ? 0 : WithDots(row->duration, dots);
}

NoteValue ValueOf(int duration) {
  for (int dots = 0; dots <= kMostDots; ++dots) {
    for (const NoteType& row : kNoteTypes) {
      const bool has_room = row.duration >> dots > 0;
      if (has_room && WithDots(row.duration, dots) == duration) return {row.name, dots};
    }
  }
  return {};
}

int StaffNumber(pugi::xml_node staff) {
  const int number = SmallNumber(staff.child_value());
  return number < 1 || number > kMostStaves ? 0 : number;
}

Fraction MeasureItems::LengthOf(pugi::xml_node node, std::string_view count, std::string_view problem) {
  const std::optional<Fraction> duration = ParseDecimal(count);
  if (!duration || duration->numerator < 0) {
    problems.push_back({node, problem});
    return {};
  }
  if (duration->denominator == 1 && divisions.denominator == 1) return {duration->numerator, divisions.numerator};
  return *duration / divisions;
}

void MeasureItems::ReadNote(Item& item) {
  NoteParts note{item, {}};
  item.entry.note_count = 1;
  for (pugi::xml_node child = item.node.first_child(); child; child = child.next_sibling()) {
    const char* const name = child.name();
    for (const auto& [part, read] : kNoteParts) {
      if (!Is(part, name)) continue;
      read(child, note);
      break;
    }
  }
  if (note.odd_staff) problems.push_back({item.node, "no staff has this number; the note counts on staff 1"});
  if (Is(item.node.attribute("print-object").value(), "no")) Flag(note, kHidden);
  const bool grace = (item.entry.flags & kGrace) != 0;
  const int written = WrittenDuration(note.type, note.dots);
  if (written == 0) Flag(note, kUntyped);
  if (!grace && (note.duration != nullptr || written == 0)) {
    const char* const count = note.duration != nullptr ? note.duration : "";
    item.length = LengthOf(item.node, count, "a note without a sound <duration> takes no time");
  } else if (!grace) {
    problems.push_back({item.node, "a note without <duration> lasts as long as its type says"});
    item.length = {written, 1024};
  }
  const auto untyped = [&] { return grace ? kGraceDuration : std::clamp(ToUnits(item.length), 0, 65535); };
  item.entry.duration = static_cast<std::uint16_t>(written != 0 ? written : untyped());
  item.chord = note.chord && has_head_;
  if (item.chord) {
    const Item& head = items[head_index_];
    item.voice = head.voice;
    item.key_staff = head.key_staff;
  } else {
    item.key_staff = item.voice.empty() ? item.staff : 0;
  }
}

void MeasureItems::Move(Item& item) {
  item.before = cursor_;
  if (item.kind == ItemKind::kBackup) {
    item.length =
        LengthOf(item.node, item.node.child_value("duration"), "a <backup> without a sound <duration> takes no time");
    if (cursor_ < item.length) {
      problems.push_back({item.node, "a <backup> goes back beyond the start of the measure; it ends there"});
      cursor_ = {};
    } else if (item.length.IsZero()) {
      if (item.node.child("duration")) problems.push_back({item.node, "a <backup> of no length"});
    } else {
      cursor_ = cursor_ - item.length;
    }
  } else if (item.MovesCursor() && !item.chord) {
    if (item.kind == ItemKind::kForward) {
      item.length = LengthOf(item.node, item.node.child_value("duration"),
                             "a <forward> without a sound <duration> takes no time");
    }
    if (!item.length.IsZero()) cursor_ = cursor_ + item.length;
    if (furthest < cursor_) furthest = cursor_;
  }
  item.after = cursor_;
}

void MeasureItems::ReadItem(pugi::xml_node node, std::size_t base) {
  Item& item = items.emplace_back();
  item.kind = KindOf(node.name());
  item.node = node;
  item.begin = base + static_cast<std::size_t>(node.offset_debug()) - 1;
  if (item.kind == ItemKind::kNote) ReadNote(item);
  if (Is(node.name(), "attributes")) {
    for (const pugi::xml_node child : node.children("divisions")) {
      const auto changed = ParseDecimal(child.child_value());
      if (changed && changed->numerator > 0) {
        divisions = *changed;
      } else {
        problems.push_back({child, "<divisions> is no number above 0 and is not heeded"});
      }
    }
  }
  Move(item);
  item.divisions = divisions;
  if (item.kind == ItemKind::kNote && !item.chord) {
    has_head_ = true;
    head_index_ = items.size() - 1;
  } else if (item.kind == ItemKind::kBackup || item.kind == ItemKind::kForward) {
    has_head_ = false;
  }
}

void MeasureItems::Read(pugi::xml_node measure, std::size_t base) {
  items.clear();
  problems.clear();
  furthest = cursor_ = {};
  has_head_ = false;
  for (pugi::xml_node node = measure.first_child(); node; node = node.next_sibling()) {
    if (node.type() == pugi::node_element) ReadItem(node, base);
  }
}

}  // namespace sok
