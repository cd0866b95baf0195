#include "host/musicxml/model.h"

#include <algorithm>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/engine/document.h"

namespace sok {
namespace {

// The next layer of a staff goes to a voice that has none there.
VoiceHome& HomeFor(Voice& voice, int staff, int measure, int& layers_given) {
  for (VoiceHome& home : voice.homes) {
    if (home.staff == staff) return home;
  }
  const auto layer = static_cast<short>(std::min<int>(layers_given, kLayers - 1));
  return voice.homes.emplace_back(VoiceHome{staff, layer, measure, layers_given++ >= kLayers});
}

// In order of appearance, and kept for the whole part: layers must not move from measure to measure.
void AssignLayers(Part& part) {
  std::vector<int> layers_given(static_cast<std::size_t>(part.staves), 0);
  for (std::size_t measure = 0; measure < part.measures.size(); ++measure) {
    const Cell& cell = part.measures[measure];
    for (std::uint32_t i = cell.first_voice; i < cell.first_voice + cell.voices; ++i) {
      VoiceCell& voice = part.cells[i];
      int& given = layers_given[static_cast<std::size_t>(voice.home - 1)];
      const VoiceHome& home = HomeFor(part.voices[voice.voice], voice.home, static_cast<int>(measure), given);
      voice.layer = static_cast<std::uint8_t>(home.layer);
    }
  }
}

bool IsVisited(const Model& model, const Cell& cell, short slot) {
  const Part& part = model.PartOf(slot);
  const int staff = model.StaffOf(slot);
  const auto first = part.cells.begin() + cell.first_voice;
  return std::any_of(first, first + cell.voices, [&](const VoiceCell& voice) {
    return voice.home != staff && (voice.drawn_on & StaffBit(staff)) != 0;
  });
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

bool Model::IsHiddenRest(const VoiceCell& voice, short measure) const {
  return (entries[voice.first_entry].flags & kHidden) != 0 && IsWholeRest(voice, measure);
}

bool Model::IsLeftOut(const VoiceCell& voice, short measure) const {
  return options.hidden_rests == HiddenRests::kEmpty && IsHiddenRest(voice, measure);
}

bool Model::HandsOut(short slot, short measure, short layer) const {
  const Cell* cell = CellOf(slot, measure);
  if (cell == nullptr || (options.layers >> layer & 1) == 0) return false;
  bool own = false;
  bool kept = false;
  ForEachVoice(slot, measure, layer, [&](const Voice&, const VoiceCell& voice) {
    own = own || !IsLeftOut(voice, measure);
    kept = kept || (options.hidden_rests == HiddenRests::kKeep && IsHiddenRest(voice, measure));
  });
  return !kept && (own || options.fill_visited || !IsVisited(*this, *cell, slot));
}

const Voice* Model::FirstVoice(short slot) const {
  for (const Voice& voice : PartOf(slot).voices) {
    const VoiceHome* home = voice.HomeOn(StaffOf(slot));
    if (home != nullptr && home->layer == 0) return &voice;
  }
  return nullptr;
}

void AssignLayers(Model& model) {
  short slot = 1;
  for (std::size_t index = 0; index < model.parts.size(); ++index) {
    Part& part = model.parts[index];
    part.first_slot = slot;
    part.clef_middles.resize(static_cast<std::size_t>(part.staves), 6);
    AssignLayers(part);
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
    facts.cross_staff = facts.cross_staff || (voice.drawn_on & ~StaffBit(staff)) != 0;
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
  const Cell* cell = model.CellOf(slot, measure);
  around.visited = cell != nullptr && IsVisited(model, *cell, slot);
  return around;
}

}  // namespace sok
