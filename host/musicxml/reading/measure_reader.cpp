#include "host/musicxml/reading/measure_reader.h"

#include <algorithm>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/errors.h"
#include "host/musicxml/text/markup.h"

namespace sok {
namespace {

constexpr std::size_t kMostWarnings = 1000;

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

// Voices are numbered in blocks of four a staff; 0 when the name is no such number.
int StaffByNumber(const std::string& name) {
  if (name.empty() || name.size() > 4 || name.find_first_not_of("0123456789") != std::string::npos) return 0;
  return (std::stoi(name) + 3) / 4;
}

std::uint32_t At(const std::vector<std::uint32_t>& counts, int staff) {
  const auto index = static_cast<std::size_t>(staff - 1);
  return staff > 0 && index < counts.size() ? counts[index] : 0;
}

void CountOn(std::vector<std::uint32_t>& counts, int staff) {
  const auto size = static_cast<std::size_t>(staff);
  if (counts.size() < size) counts.resize(size, 0);
  ++counts[size - 1];
}

bool SetsDivisionsOnly(pugi::xml_node attributes) {
  const pugi::xml_node child = attributes.first_child();
  return Is(child.name(), "divisions") && !child.next_sibling();
}

}  // namespace

void MeasureReader::Warn(pugi::xml_node node, std::string_view text) {
  if (model_.warnings.size() == kMostWarnings) model_.warnings.push_back({0, "there are more warnings than are shown"});
  if (model_.warnings.size() > kMostWarnings) return;
  const std::string place =
      "part " + part_->id + ", " + MeasureLabel(model_.measures, part_->measures.size() + 1) + ": ";
  model_.warnings.push_back({lines_.LineOf(OffsetOf(node)), place + std::string(text)});
}

std::uint16_t MeasureReader::VoiceNumber(const Item& note) {
  std::string key(note.voice);
  if (note.key_staff != 0) key += '\n' + std::to_string(note.key_staff);
  const auto [at, is_new] = state_->voices.try_emplace(key, static_cast<std::uint16_t>(part_->voices.size()));
  if (is_new) {
    if (part_->voices.size() == kMostVoices) {
      throw Error("the part has more than " + std::to_string(kMostVoices) + " voices");
    }
    part_->voices.push_back({std::string(note.voice), note.key_staff, {}});
    state_->open_voices.push_back(0);
  }
  return at->second;
}

MeasureReader::OpenVoice& MeasureReader::VoiceFor(const Item& note) {
  if (last_ != nullptr) {
    const Voice& voice = part_->voices[last_->cell.voice];
    if (voice.key_staff == note.key_staff && voice.name == note.voice) return *last_;
  }
  const std::uint16_t number = VoiceNumber(note);
  std::uint32_t& open = state_->open_voices[number];
  if (open != 0) return open_[open - 1];
  if (open_count_ == open_.size()) open_.emplace_back();
  OpenVoice& voice = open_[open_count_++];
  open = static_cast<std::uint32_t>(open_count_);
  voice.cell = {};
  voice.cell.voice = number;
  voice.entries.clear();
  voice.pitches.clear();
  voice.notes_on.clear();
  voice.rests_on.clear();
  return voice;
}

void MeasureReader::AddNote(const Item& note) {
  part_->staves = std::max(part_->staves, note.staff);
  if (model_.first_note == 0) model_.first_note = note.begin;
  if (note.chord) {
    AddToEntry(note, onset_, *last_);
    return;
  }
  OpenVoice& voice = VoiceFor(note);
  last_ = &voice;
  if (voice.entries.empty()) voice.cell.length = note.length;
  voice.entries.push_back(note.entry);
  voice.entries.back().note_count = 0;
  voice.entries.back().first_pitch = static_cast<std::uint32_t>(voice.pitches.size());
  onset_ = note.before;
  AddToEntry(note, onset_, voice);
}

void MeasureReader::AddToEntry(const Item& note, const Fraction& onset, OpenVoice& voice) {
  VoiceMeasure& cell = voice.cell;
  Entry& entry = voice.entries.back();
  const std::uint8_t flags = note.entry.flags;
  entry.flags |= static_cast<std::uint8_t>(flags & kFermata);
  if ((entry.flags & kRest) != 0) {
    if ((entry.flags & kPlaced) != 0 && entry.note_count == 0) voice.pitches.push_back(note.pitch);
    entry.note_count = 1;
  } else if ((flags & kRest) == 0 && entry.note_count < EXENTRY::kMostNotes) {
    voice.pitches.push_back(note.pitch);
    ++entry.note_count;
  }
  const bool hidden = (flags & kHidden) != 0;
  cell.all_hidden = cell.all_hidden && hidden;
  cell.no_full_notes = cell.no_full_notes && (flags & (kCue | kRest)) != 0;
  if (!hidden) cell.drawn_on |= StaffBit(note.staff);
  CountOn((flags & kRest) != 0 ? voice.rests_on : voice.notes_on, note.staff);

  Mix(cell.fingerprint, Scaled(onset));
  Mix(cell.fingerprint, Scaled(note.length));
  Mix(cell.fingerprint, static_cast<std::uint64_t>(note.entry.duration) << 24 |
                            static_cast<std::uint64_t>(flags) << 16 | static_cast<std::uint64_t>(note.staff) << 8 |
                            static_cast<std::uint64_t>(note.chord));
  Mix(cell.fingerprint, static_cast<std::uint64_t>(static_cast<std::uint16_t>(note.pitch.step)) << 16 |
                            static_cast<std::uint8_t>(note.pitch.alter));
}

// The staff where most of the voice's notes stand in this measure; of a voice without notes, its rests. Whole-measure
// rests that come and go elsewhere move nothing. The voice's number decides between staves that have the same.
int MeasureReader::HomeOf(const OpenVoice& voice) const {
  const std::vector<std::uint32_t>& counts = voice.notes_on.empty() ? voice.rests_on : voice.notes_on;
  const int home = 1 + static_cast<int>(std::max_element(counts.begin(), counts.end()) - counts.begin());
  const int numbered = StaffByNumber(part_->voices[voice.cell.voice].name);
  return At(counts, numbered) == At(counts, home) ? numbered : home;
}

// What stands beside the notes, and where, to compare two readings.
void MeasureReader::AddBeside(const Item& item, PartMeasure& cell) const {
  for (const char* c = item.node.name(); *c != '\0'; ++c) Mix(cell.names, static_cast<unsigned char>(*c));
  Mix(cell.fingerprint, cell.names);
  Mix(cell.fingerprint, Scaled(item.before));
}

void MeasureReader::ReadTime(pugi::xml_node time) {
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

void MeasureReader::ReadClef(pugi::xml_node clef) {
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

void MeasureReader::ReadStyle(pugi::xml_node style) {
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

void MeasureReader::ReadAttributes(pugi::xml_node node) {
  for (const pugi::xml_node child : node.children()) {
    const char* name = child.name();
    if (Is(name, "time")) {
      ReadTime(child);
    } else if (Is(name, "staves")) {
      const int staves = SmallNumber(child.child_value());
      if (staves < 1 || staves > kMostStaves) {
        Warn(child, "<staves> is not heeded: a part has 1 to 64");
      } else {
        part_->staves = std::max(part_->staves, staves);
      }
    } else if (Is(name, "key")) {
      state_->fifths = std::clamp(SmallNumber(child.child_value("fifths")), -7, 7);
    } else if (Is(name, "clef")) {
      ReadClef(child);
    } else if (Is(name, "measure-style")) {
      ReadStyle(child);
    }
  }
}

void MeasureReader::Read(int part, PartState& state, pugi::xml_node node, std::size_t base, std::size_t size) {
  base_ = base;
  part_ = &model_.parts[static_cast<std::size_t>(part)];
  state_ = &state;
  open_count_ = 0;
  last_ = nullptr;
  PartMeasure cell;
  cell.offset = OffsetOf(node);
  cell.size = static_cast<std::uint32_t>(size);
  cell.divisions = state.divisions;
  cell.fifths = static_cast<std::int8_t>(state.fifths);
  measure_.divisions = state.divisions;
  measure_.Read(node, base);
  state.divisions = measure_.divisions;
  for (const ItemProblem& problem : measure_.problems) Warn(problem.node, problem.text);
  for (const Item& item : measure_.items) {
    if (item.kind == ItemKind::kNote) AddNote(item);
    cell.has_signs = cell.has_signs || item.has_notations || item.in_tuplet;
    if (item.kind != ItemKind::kPlaced) continue;
    cell.has_signs = cell.has_signs || Is(item.node.name(), "direction");
    if (Is(item.node.name(), "attributes")) {
      ReadAttributes(item.node);
      if (SetsDivisionsOnly(item.node)) continue;  // they show in every length behind them
    }
    AddBeside(item, cell);
  }
  Finish(cell);
}

void MeasureReader::Finish(PartMeasure& cell) {
  cell.first_voice = static_cast<std::uint32_t>(part_->cells.size());
  cell.voice_count = static_cast<std::uint32_t>(open_count_);
  for (std::size_t i = 0; i < open_count_; ++i) {
    OpenVoice& voice = open_[i];
    state_->open_voices[voice.cell.voice] = 0;
    if (model_.entries.size() + voice.entries.size() > 0x7FFFFFF0) throw Error("the score has too many notes");
    voice.cell.length = Reduced(voice.cell.length);
    voice.cell.home = static_cast<std::uint8_t>(HomeOf(voice));
    voice.cell.first_entry = static_cast<std::uint32_t>(model_.entries.size());
    voice.cell.entry_count = static_cast<std::uint32_t>(voice.entries.size());
    const auto pitch_base = static_cast<std::uint32_t>(model_.pitches.size());
    for (Entry& entry : voice.entries) {
      entry.first_pitch += pitch_base;
      model_.entries.push_back(entry);
    }
    model_.pitches.insert(model_.pitches.end(), voice.pitches.begin(), voice.pitches.end());
    part_->cells.push_back(voice.cell);
  }
  const std::size_t measure = part_->measures.size();
  if (measure == model_.lengths.size()) model_.lengths.emplace_back();
  if (model_.lengths[measure] < measure_.furthest) model_.lengths[measure] = Reduced(measure_.furthest);
  part_->measures.push_back(cell);
}

void MeasureReader::EndPart(int part, PartState& state) {
  Part& ended = model_.parts[static_cast<std::size_t>(part)];
  for (SignRange& range : state.open) {
    range.last = static_cast<int>(ended.measures.size()) - 1;
    ended.ranges.push_back(range);
  }
}

}  // namespace sok
