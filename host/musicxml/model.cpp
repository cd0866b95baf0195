#include "host/musicxml/model.h"

#include <algorithm>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/engine/document.h"

namespace sok {
namespace {

std::uint64_t Sum(const std::vector<std::uint32_t>& counts) {
  std::uint64_t sum = 0;
  for (const std::uint32_t count : counts) sum += count;
  return sum;
}

// Voices are numbered in blocks of four a staff; 0 when the name is no such number.
int StaffByNumber(const std::string& name) {
  if (name.empty() || name.size() > 4 || name.find_first_not_of("0123456789") != std::string::npos) return 0;
  return (std::stoi(name) + 3) / 4;
}

// Rests do not count while the part has a note: whole-measure rests come and go, and voices must not move with them.
bool NumbersTellStaves(const Part& part) {
  std::uint64_t notes = 0;
  std::uint64_t agreeing = 0;
  for (const Voice& voice : part.voices) {
    notes += Sum(voice.notes_on);
    const int staff = StaffByNumber(voice.name);
    if (staff >= 1 && staff <= static_cast<int>(voice.notes_on.size())) {
      agreeing += voice.notes_on[static_cast<std::size_t>(staff - 1)];
    }
  }
  return notes > 0 && agreeing * 10 >= notes * 9;
}

// A voice that stands on both staves lives in one of them, and the other one is empty where it alone is drawn there:
// such a measure can be filled among the notes one sees. Surroundings tell of it; ReadOptions::cross_staff_drawn goes
// by what one sees.
int HomeOf(const Voice& voice, bool by_number, int staves) {
  if (voice.key_staff != 0) return voice.key_staff;
  const int staff = StaffByNumber(voice.name);
  if (by_number && staff >= 1 && staff <= staves) return staff;
  const std::vector<std::uint32_t>& counts = Sum(voice.notes_on) > 0 ? voice.notes_on : voice.rests_on;
  if (counts.empty()) return 1;
  return 1 + static_cast<int>(std::max_element(counts.begin(), counts.end()) - counts.begin());
}

}  // namespace

std::string MeasureLabel(const std::vector<Measure>& measures, std::size_t position) {
  const std::string text = std::to_string(position);
  const std::string number = position <= measures.size() ? measures[position - 1].number : std::string();
  return "measure " + text + (number.empty() || number == text ? "" : " (printed " + number + ")");
}

bool Model::Holds(short slot, short measure) const {
  return slot >= 1 && static_cast<std::size_t>(slot) <= staves.size() && measure >= 1 &&
         static_cast<std::size_t>(measure) <= measures.size();
}

const Cell* Model::CellOf(short slot, short measure) const {
  if (!Holds(slot, measure)) return nullptr;
  const Part& part = PartOf(slot);
  const auto index = static_cast<std::size_t>(measure - 1);
  return index < part.measures.size() ? &part.measures[index] : nullptr;
}

bool Model::IsWholeRest(const VoiceCell& voice, short measure) const {
  if (voice.entries != 1) return false;
  const Entry& entry = entries[voice.first_entry];
  if ((entry.flags & kRest) == 0 || (entry.flags & kGrace) != 0) return false;
  if ((entry.flags & kBarRest) != 0) return true;
  const Fraction& length = lengths[static_cast<std::size_t>(measure - 1)];
  return (entry.flags & kUntyped) != 0 ? SameLength(voice.length, length) : entry.duration == kWholeRestDuration;
}

bool Model::IsLeftOut(const VoiceCell& voice, short measure) const {
  return options.hidden_rests_empty && (entries[voice.first_entry].flags & kHidden) != 0 && IsWholeRest(voice, measure);
}

const Voice* Model::FirstVoice(short slot) const {
  const int staff = StaffOf(slot);
  for (const Voice& voice : PartOf(slot).voices) {
    if (voice.home == staff && voice.layer == 0) return &voice;
  }
  return nullptr;
}

void AssignLayers(Model& model) {
  short slot = 1;
  for (std::size_t index = 0; index < model.parts.size(); ++index) {
    Part& part = model.parts[index];
    part.first_slot = slot;
    part.clef_middles.resize(static_cast<std::size_t>(part.staves), 6);
    const bool by_number = NumbersTellStaves(part);
    std::vector<int> layers_given(static_cast<std::size_t>(part.staves), 0);
    for (Voice& voice : part.voices) {  // in order of appearance
      voice.home = HomeOf(voice, by_number, part.staves);
      int& given = layers_given[static_cast<std::size_t>(voice.home - 1)];
      voice.surplus = given >= kLayers;
      voice.layer = static_cast<short>(std::min<int>(given++, kLayers - 1));
    }
    for (int staff = 1; staff <= part.staves; ++staff, ++slot) {
      if (slot == 32767) throw std::runtime_error("the score has too many staves");
      model.staves.push_back(
          {part.id, part.name, part.abbreviation, static_cast<int>(index), staff, part.staves, slot});
    }
  }
}

LayerFacts FactsOf(const Model& model, short slot, short measure, short layer) {
  LayerFacts facts;
  const int staff = model.Holds(slot, measure) ? model.StaffOf(slot) : 0;
  const VoiceCell* first = nullptr;
  int sharing = 0;
  bool bar_rest = false;
  bool any_cue = false;
  bool no_full_notes = true;
  facts.hidden = true;
  model.ForEachVoice(slot, measure, layer, [&](const Voice& owner, const VoiceCell& voice) {
    ++sharing;
    if (first == nullptr) {
      first = &voice;
      facts.voice = owner.name;
    }
    if (!model.IsLeftOut(voice, measure)) facts.entries += static_cast<int>(voice.entries);
    facts.hidden = facts.hidden && voice.all_hidden;
    facts.cross_staff = facts.cross_staff || voice.drawn_on != StaffBit(staff);
    no_full_notes = no_full_notes && voice.no_full_notes;
    for (std::uint32_t i = 0; i < voice.entries; ++i) {
      const std::uint8_t flags = model.entries[voice.first_entry + i].flags;
      facts.grace = facts.grace || (flags & kGrace) != 0;
      any_cue = any_cue || (flags & kCue) != 0;
      bar_rest = bar_rest || (flags & kBarRest) != 0;
    }
  });
  if (first == nullptr) return {};
  const Entry& entry = model.entries[first->first_entry];
  const bool lone = sharing == 1 && first->entries == 1 && (entry.flags & kRest) != 0;
  const bool full = lone && model.IsWholeRest(*first, measure);
  facts.surplus = sharing > 1;
  facts.bar_rest_beside = bar_rest && facts.entries > 1;
  facts.whole_rest = full && facts.entries == 1;
  facts.looks_whole = lone && !full && SameLength(first->length, model.lengths[static_cast<std::size_t>(measure - 1)]);
  facts.hidden_rest = full && (entry.flags & kHidden) != 0;
  facts.fermata = lone && (entry.flags & kFermata) != 0;
  facts.cue = any_cue && no_full_notes;
  return facts;
}

Surroundings AroundOf(const Model& model, short slot, short measure) {
  Surroundings around;
  if (!model.Holds(slot, measure)) return around;
  for (const SignRange& range : model.PartOf(slot).ranges) {
    if (measure - 1 < range.first || measure - 1 > range.last) continue;
    if (range.staff != 0 && range.staff != model.StaffOf(slot)) continue;
    if (range.kind == SignRange::kMultipleRest) around.multiple_rest = true;
    if (range.kind == SignRange::kMeasureRepeat) around.measure_repeat = true;
    if (range.kind == SignRange::kSlash) around.slash = true;
  }
  if (const Cell* cell = model.CellOf(slot, measure)) {
    const Part& part = model.PartOf(slot);
    const int staff = model.StaffOf(slot);
    for (std::uint32_t i = cell->first_voice; i < cell->first_voice + cell->voices; ++i) {
      const VoiceCell& voice = part.cells[i];
      if (part.voices[voice.voice].home != staff && (voice.drawn_on & StaffBit(staff)) != 0) around.visited = true;
    }
  }
  return around;
}

}  // namespace sok
