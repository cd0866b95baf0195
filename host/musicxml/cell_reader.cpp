#include "host/musicxml/cell_reader.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace sok {
namespace {

constexpr int kMostStaves = 64;  // of one part
constexpr std::size_t kMostWarnings = 1000;
constexpr int kMostNotes = 12;  // of one entry

struct NoteType {
  std::string_view name;
  int duration;
};
constexpr NoteType kNoteTypes[] = {
    {"quarter", 1024}, {"eighth", 512}, {"16th", 256},   {"half", 2048},    {"whole", 4096},
    {"32nd", 128},     {"64th", 64},    {"128th", 32},   {"256th", 16},     {"512th", 8},
    {"1024th", 4},     {"breve", 8192}, {"long", 16384}, {"maxima", 32768},
};

bool Is(const char* name, const char* other) { return std::strcmp(name, other) == 0; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsXmlSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsXmlSpace(text.back())) text.remove_suffix(1);
  return text;
}

// 0 for what is no number or a huge one.
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

void Mix(std::uint64_t& fingerprint, std::uint64_t value) {
  fingerprint = (fingerprint ^ value) * 0x9E3779B97F4A7C15ULL;
  fingerprint ^= fingerprint >> 29;
}

// The same for equal fractions, however they are written, and for a cut decimal number in place of one.
std::uint64_t Scaled(const Fraction& value) {
  constexpr std::int64_t kGrid = 80640;  // all common notes and tuplets stand on it
  if (value.numerator < (std::int64_t{1} << 40)) {
    return static_cast<std::uint64_t>((value.numerator * kGrid * 2 / value.denominator + 1) / 2);
  }
  return static_cast<std::uint64_t>(value.numerator / value.denominator) * kGrid;
}

int StepsFromMiddleC(std::string_view step, int octave) {
  constexpr std::string_view kSteps = "CDEFGAB";
  const std::size_t index = step.size() == 1 ? kSteps.find(step[0]) : std::string_view::npos;
  return index == std::string_view::npos ? 0 : static_cast<int>(index) + 7 * (octave - 4);
}

std::int16_t ToShort(int value) { return static_cast<std::int16_t>(std::clamp(value, -32767, 32767)); }

// Written value with dots, at most what 16 bits hold; 0 for an unknown type.
int WrittenDuration(std::string_view type, int dots) {
  for (const NoteType& row : kNoteTypes) {
    if (row.name != type) continue;
    int duration = row.duration;
    for (int add = duration / 2; dots > 0 && add > 0; --dots, add /= 2) duration += add;
    return std::min(duration, 65535);
  }
  return 0;
}

bool Standing(const char* name) { return Is(name, "barline") || Is(name, "print"); }  // no matter where the cursor is

}  // namespace

int WrittenDurationOf(pugi::xml_node note) {
  const auto dots = note.children("dot");
  return WrittenDuration(Trimmed(note.child_value("type")), static_cast<int>(std::distance(dots.begin(), dots.end())));
}

int StaffNumber(pugi::xml_node staff) {
  const int number = SmallNumber(staff.child_value());
  return number < 1 || number > kMostStaves ? 0 : number;
}

struct CellReader::NoteData {
  Entry entry;
  Pitch pitch;
  Fraction length;
  const char* voice = "";
  int staff = 1;
  bool chord = false;
  std::size_t offset = 0;
  std::ptrdiff_t key = 0;  // of the note in the parsed tree
};

void CellReader::Warn(pugi::xml_node node, const std::string& text) {
  if (model_.warnings.size() == kMostWarnings) model_.warnings.push_back({0, "there are more warnings than are shown"});
  if (model_.warnings.size() > kMostWarnings) return;
  std::string place;
  if (part_ != nullptr) {
    place = "part " + part_->id + ", " + MeasureLabel(model_.measures, part_->measures.size() + 1) + ": ";
  }
  model_.warnings.push_back({lines_.LineOf(OffsetOf(node)), place + text});
}

void CellReader::Advance(const Fraction& length) {
  if (length.IsZero()) return;
  cursor_ = cursor_ + length;
  if (furthest_ < cursor_) furthest_ = cursor_;
}

Fraction CellReader::LengthOf(pugi::xml_node node, const char* what) {
  const std::optional<Fraction> duration = ParseDecimal(node.child_value("duration"));
  if (!duration || duration->numerator < 0) {
    Warn(node, std::string(what) + " without a sound <duration> takes no time");
    return {};
  }
  const Fraction& divisions = state_->divisions;
  if (duration->denominator == 1 && divisions.denominator == 1) return {duration->numerator, divisions.numerator};
  return *duration / divisions;
}

CellReader::NoteData CellReader::Parse(pugi::xml_node node) {
  NoteData note;
  note.offset = OffsetOf(node);
  if (parsed_ != nullptr) note.key = node.offset_debug();
  std::string_view type;
  int dots = 0;
  bool has_duration = false;
  std::uint8_t flags = 0;
  for (const pugi::xml_node child : node.children()) {
    const char* name = child.name();
    switch (name[0]) {
      case 'p':
        if (Is(name, "pitch")) {
          const int octave = SmallNumber(child.child_value("octave"));
          note.pitch.step = ToShort(StepsFromMiddleC(Trimmed(child.child_value("step")), octave));
          if (const auto alter = ParseDecimal(child.child_value("alter"))) {
            note.pitch.alter = ToShort(static_cast<int>(alter->numerator / alter->denominator % 100));
          }
        }
        break;
      case 'u':
        if (Is(name, "unpitched")) {
          const std::string_view step = Trimmed(child.child_value("display-step"));
          note.pitch.step =
              ToShort(step.empty() ? 6 : StepsFromMiddleC(step, SmallNumber(child.child_value("display-octave"))));
        }
        break;
      case 'r':
        if (Is(name, "rest")) {
          flags |= kRest;
          if (Is(child.attribute("measure").value(), "yes")) flags |= kBarRest;
        }
        break;
      case 'c':
        if (Is(name, "chord")) note.chord = true;
        if (Is(name, "cue")) flags |= kCue;
        break;
      case 'g':
        if (Is(name, "grace")) flags |= kGrace;
        break;
      case 'd':
        if (Is(name, "duration")) has_duration = true;
        if (Is(name, "dot")) ++dots;
        break;
      case 'v':
        if (Is(name, "voice")) note.voice = child.child_value();
        break;
      case 't':
        if (Is(name, "type")) {
          type = Trimmed(child.child_value());
          if (Is(child.attribute("size").value(), "cue")) flags |= kCue;
        }
        break;
      case 's':
        if (Is(name, "staff")) {
          note.staff = StaffNumber(child);
          if (note.staff == 0) {
            Warn(child, "no staff has this number; the note counts on staff 1");
            note.staff = 1;
          }
        }
        break;
      case 'n':
        if (Is(name, "notations") && child.child("fermata")) flags |= kFermata;
        break;
      default:
        break;
    }
  }
  if (Is(node.attribute("print-object").value(), "no")) flags |= kHidden;
  const int written = WrittenDuration(type, dots);
  if ((flags & kGrace) == 0) {
    if (has_duration || written == 0) {
      note.length = LengthOf(node, "a note");
    } else {
      Warn(node, "a note without <duration> lasts as long as its type says");
      note.length = {written, 1024};
    }
  }
  if (written == 0) flags |= kUntyped;
  const int duration = written != 0            ? written
                       : (flags & kGrace) != 0 ? 512
                                               : std::clamp(ToUnits(note.length), 0, 65535);
  note.entry = {static_cast<std::uint16_t>(duration), 1, flags, 0};
  return note;
}

CellReader::OpenVoice& CellReader::VoiceFor(const char* name, int staff) {
  const std::string_view trimmed = Trimmed(name);
  const int key_staff = trimmed.empty() || model_.options.cross_staff_drawn ? staff : 0;
  if (last_ != nullptr) {
    const Voice& voice = part_->voices[last_->cell.voice];
    if (voice.key_staff == key_staff && voice.name == trimmed) return *last_;
  }
  std::string key(trimmed);
  if (key_staff != 0) key += '\n' + std::to_string(key_staff);
  const auto [at, is_new] = state_->voices.try_emplace(key, static_cast<std::uint16_t>(part_->voices.size()));
  if (is_new) {
    if (part_->voices.size() == 65535) throw std::runtime_error("the part has too many voices");
    part_->voices.emplace_back();
    part_->voices.back().name = trimmed;
    part_->voices.back().key_staff = key_staff;
    part_->voices.back().first_measure = static_cast<int>(part_->measures.size());
  }
  for (std::size_t i = 0; i < open_count_; ++i) {
    if (open_[i].cell.voice == at->second) return open_[i];
  }
  if (open_count_ == open_.size()) open_.emplace_back();
  OpenVoice& voice = open_[open_count_++];
  voice.cell = {};
  voice.cell.voice = at->second;
  voice.entries.clear();
  voice.pitches.clear();
  voice.notes.clear();
  return voice;
}

void CellReader::ReadNote(pugi::xml_node node) {
  const NoteData note = Parse(node);
  part_->staves = std::max(part_->staves, note.staff);
  if (model_.first_note == 0) model_.first_note = note.offset;
  if (note.chord && last_ != nullptr && !last_->entries.empty()) {
    AddToEntry(note, *last_);
    return;
  }
  OpenVoice& voice = VoiceFor(note.voice, note.staff);
  last_ = &voice;
  if (voice.entries.empty()) {
    voice.cell.offset = note.offset;
    voice.cell.length = note.length;
  }
  voice.entries.push_back(note.entry);
  voice.entries.back().notes = 0;
  voice.entries.back().pitch = static_cast<std::uint32_t>(voice.pitches.size());
  chord_onset_ = cursor_;
  AddToEntry(note, voice);
  Advance(note.length);
}

void CellReader::AddToEntry(const NoteData& note, OpenVoice& voice) {
  VoiceCell& cell = voice.cell;
  Entry& entry = voice.entries.back();
  const std::uint8_t flags = note.entry.flags;
  entry.flags |= static_cast<std::uint8_t>(flags & kFermata);
  if ((entry.flags & kRest) != 0) {
    entry.notes = 1;
  } else if ((flags & kRest) == 0 && entry.notes < kMostNotes) {
    voice.pitches.push_back(note.pitch);
    ++entry.notes;
  }
  if (parsed_ != nullptr) voice.notes.emplace_back(note.key, static_cast<std::uint32_t>(voice.entries.size() - 1));

  cell.all_hidden = cell.all_hidden && (flags & kHidden) != 0;
  cell.no_full_notes = cell.no_full_notes && (flags & (kCue | kRest)) != 0;
  cell.drawn_on |= StaffBit(note.staff);
  auto& counts = (flags & kRest) != 0 ? part_->voices[cell.voice].rests_on : part_->voices[cell.voice].notes_on;
  const auto staff = static_cast<std::size_t>(note.staff);
  if (counts.size() < staff) counts.resize(staff, 0);
  ++counts[staff - 1];

  Mix(cell.fingerprint, Scaled(chord_onset_));
  Mix(cell.fingerprint, Scaled(note.length));
  Mix(cell.fingerprint, static_cast<std::uint64_t>(note.entry.duration) << 24 |
                            static_cast<std::uint64_t>(flags) << 16 | static_cast<std::uint64_t>(note.staff) << 8 |
                            static_cast<std::uint64_t>(note.chord));
  Mix(cell.fingerprint, static_cast<std::uint64_t>(static_cast<std::uint16_t>(note.pitch.step)) << 16 |
                            static_cast<std::uint16_t>(note.pitch.alter));
}

void CellReader::ReadBackup(pugi::xml_node node) {
  const Fraction length = LengthOf(node, "a <backup>");
  if (cursor_ < length) {
    Warn(node, "a <backup> goes back beyond the start of the measure; it ends there");
    cursor_ = {};
  } else {
    if (length.IsZero() && node.child("duration")) Warn(node, "a <backup> of no length");
    cursor_ = cursor_ - length;
  }
}

void CellReader::ReadTime(pugi::xml_node time) {
  if (time.attribute("number").as_int(1) > 1) return;
  Fraction total;
  Fraction beats;
  for (const pugi::xml_node child : time.children()) {
    if (Is(child.name(), "beats")) {
      beats = {};
      std::string_view text = child.child_value();
      while (!text.empty()) {
        const std::size_t plus = text.find('+');
        beats = beats + Fraction{std::max(SmallNumber(text.substr(0, plus)), 0), 1};
        text = plus == std::string_view::npos ? std::string_view() : text.substr(plus + 1);
      }
    } else if (Is(child.name(), "beat-type")) {
      const int type = SmallNumber(child.child_value());
      if (type > 0) total = total + beats * Fraction{4, type};
    }
  }
  state_->time = total;  // 0 for <senza-misura>
}

void CellReader::ReadClef(pugi::xml_node clef) {
  const int staff = clef.attribute("number").as_int(1);
  if (staff < 1 || staff > 32 || (state_->clefs_known & (1U << (staff - 1))) != 0) return;
  state_->clefs_known |= 1U << (staff - 1);
  const std::string_view sign = Trimmed(clef.child_value("sign"));
  const int pitch = sign == "G" ? 4 : sign == "F" ? -4 : 0;
  const int usual_line = sign == "G" ? 2 : sign == "F" ? 4 : 3;
  const int given_line = SmallNumber(clef.child_value("line"));
  int middle = 6;  // other clefs: as the G clef
  if (sign == "G" || sign == "F" || sign == "C") middle = pitch + 2 * (3 - (given_line > 0 ? given_line : usual_line));
  middle += 7 * std::clamp(SmallNumber(clef.child_value("clef-octave-change")), -3, 3);
  auto& middles = part_->clef_middles;
  if (middles.size() < static_cast<std::size_t>(staff)) middles.resize(static_cast<std::size_t>(staff), 6);
  middles[static_cast<std::size_t>(staff - 1)] = std::clamp(middle, -100, 100);
}

void CellReader::ReadStyle(pugi::xml_node style) {
  const int staff = std::max(style.attribute("number").as_int(0), 0);
  const int here = static_cast<int>(part_->measures.size());
  for (const pugi::xml_node child : style.children()) {
    const char* name = child.name();
    if (Is(name, "multiple-rest")) {
      const int count = SmallNumber(child.child_value());
      if (count > 1) part_->ranges.push_back({SignRange::kMultipleRest, staff, here, here + count - 1});
      continue;
    }
    const bool repeat = Is(name, "measure-repeat");
    if (!repeat && !Is(name, "slash")) continue;
    const SignRange::Kind kind = repeat ? SignRange::kMeasureRepeat : SignRange::kSlash;
    const auto open = std::find_if(state_->open.begin(), state_->open.end(),
                                   [&](const SignRange& range) { return range.kind == kind && range.staff == staff; });
    if (open != state_->open.end()) {
      open->last = std::max(here - 1, open->first);
      part_->ranges.push_back(*open);
      state_->open.erase(open);
    }
    if (Is(child.attribute("type").value(), "start")) state_->open.push_back({kind, staff, here, here});
  }
}

void CellReader::ReadAttributes(pugi::xml_node node) {
  for (const pugi::xml_node child : node.children()) {
    const char* name = child.name();
    if (Is(name, "divisions")) {
      const auto divisions = ParseDecimal(child.child_value());
      if (divisions && divisions->numerator > 0) {
        state_->divisions = *divisions;
      } else {
        Warn(child, "<divisions> is no number above 0 and is not heeded");
      }
    } else if (Is(name, "time")) {
      ReadTime(child);
    } else if (Is(name, "staves")) {
      const int staves = SmallNumber(child.child_value());
      if (staves < 1 || staves > kMostStaves)
        Warn(child, "<staves> is not heeded: a part has 1 to 64");
      else
        part_->staves = std::max(part_->staves, staves);
    } else if (Is(name, "clef")) {
      ReadClef(child);
    } else if (Is(name, "measure-style")) {
      ReadStyle(child);
    }
  }
}

void CellReader::Read(int part, PartState& state, pugi::xml_node node, std::size_t base) {
  base_ = base;
  part_ = &model_.parts[static_cast<std::size_t>(part)];
  state_ = &state;
  cursor_ = {};
  furthest_ = {};
  open_count_ = 0;
  last_ = nullptr;
  Cell cell;
  cell.offset = OffsetOf(node);
  cell.divisions = state.divisions;
  for (const pugi::xml_node child : node.children()) {
    if (child.type() != pugi::node_element) continue;
    const char* name = child.name();
    if (parsed_ != nullptr) parsed_->positions.emplace(child.offset_debug(), ToUnits(cursor_));
    if (Is(name, "note")) {
      ReadNote(child);
    } else if (Is(name, "backup")) {
      ReadBackup(child);
      last_ = nullptr;
    } else if (Is(name, "forward")) {
      Advance(LengthOf(child, "a <forward>"));
      last_ = nullptr;
    } else {
      if (Is(name, "attributes")) ReadAttributes(child);
      if (Standing(name)) continue;
      for (const char* c = name; *c != '\0'; ++c) Mix(cell.fingerprint, static_cast<unsigned char>(*c));
      Mix(cell.fingerprint, Scaled(cursor_));
    }
  }
  Finish(cell);
  if (parsed_ != nullptr) {
    parsed_->nodes.push_back({node, part, static_cast<short>(part_->measures.size())});
  }
}

void CellReader::Finish(Cell& cell) {
  cell.first_voice = static_cast<std::uint32_t>(part_->cells.size());
  cell.voices = static_cast<std::uint32_t>(open_count_);
  for (std::size_t i = 0; i < open_count_; ++i) {
    OpenVoice& voice = open_[i];
    if (model_.entries.size() + voice.entries.size() > 0x7FFFFFF0)
      throw std::runtime_error("the score has too many notes");
    voice.cell.length = Reduced(voice.cell.length);
    voice.cell.first_entry = static_cast<std::uint32_t>(model_.entries.size());
    voice.cell.entries = static_cast<std::uint32_t>(voice.entries.size());
    const auto pitch_base = static_cast<std::uint32_t>(model_.pitches.size());
    for (Entry& entry : voice.entries) {
      entry.pitch += pitch_base;
      model_.entries.push_back(entry);
    }
    model_.pitches.insert(model_.pitches.end(), voice.pitches.begin(), voice.pitches.end());
    for (const auto& [offset, index] : voice.notes) {
      parsed_->entry_numbers.emplace(offset, static_cast<int>(voice.cell.first_entry + index + 1));
    }
    part_->cells.push_back(voice.cell);
  }
  const std::size_t measure = part_->measures.size();
  if (measure == model_.lengths.size()) model_.lengths.emplace_back();
  if (model_.lengths[measure] < furthest_) model_.lengths[measure] = Reduced(furthest_);
  part_->measures.push_back(cell);
}

void CellReader::EndPart(int part, PartState& state) {
  Part& ended = model_.parts[static_cast<std::size_t>(part)];
  for (SignRange& range : state.open) {
    range.last = static_cast<int>(ended.measures.size()) - 1;
    ended.ranges.push_back(range);
  }
}

}  // namespace sok
