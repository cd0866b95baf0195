#include "host/musicxml/model.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/engine/document.h"
#include "host/errors.h"

namespace sok {
namespace {

// Voices of a staff, by index in Part::voices.
using VoiceOrder = std::vector<std::uint16_t>;

// A voice that has no layer on a staff yet joins the order of those that are to have one.
void Settle(Part& part, const VoiceMeasure& cell, std::size_t measure, VoiceOrder& order) {
  Voice& voice = part.voices[cell.voice];
  if (voice.HomeOn(cell.home) != nullptr) return;
  voice.homes.push_back({cell.home, -1, static_cast<int>(measure), false});
  order.push_back(cell.voice);
}

VoiceHome& HomeAt(Part& part, std::uint16_t voice, int staff) {
  return *std::find_if(part.voices[voice].homes.begin(), part.voices[voice].homes.end(),
                       [&](const VoiceHome& home) { return home.staff == staff; });
}

// How a voice stands among those of its staff.
struct Company {
  bool whole_rests = true;         // has nothing else, and beside one other voice at most
  std::set<std::uint16_t> voices;  // each that is that one somewhere
};

std::map<std::uint16_t, Company> CompanyOn(const Model& model, const Part& part, int staff) {
  std::map<std::uint16_t, Company> all;
  std::vector<const VoiceMeasure*> here;
  for (std::size_t measure = 0; measure < part.measures.size(); ++measure) {
    const PartMeasure& cell = part.measures[measure];
    here.clear();
    for (std::uint32_t i = cell.first_voice; i < cell.first_voice + cell.voice_count; ++i) {
      if (part.cells[i].home == staff) here.push_back(&part.cells[i]);
    }
    for (const VoiceMeasure* const voice : here) {
      Company& company = all[voice->voice];
      company.whole_rests =
          company.whole_rests && here.size() <= 2 && model.IsWholeRest(*voice, static_cast<short>(measure + 1));
      if (here.size() == 2) company.voices.insert(here[voice == here[0] ? 1 : 0]->voice);
    }
  }
  return all;
}

// With more voices than layers, those with nothing but whole-measure rests give way, the last one first, so that such
// rests come and go without moving others. Taken out of the order.
VoiceOrder TakeGuests(const std::map<std::uint16_t, Company>& company, VoiceOrder& order) {
  VoiceOrder guests;
  for (std::size_t i = order.size(); i-- > 0 && order.size() > kLayers;) {
    if (!company.at(order[i]).whole_rests) continue;
    guests.push_back(order[i]);
    order.erase(order.begin() + static_cast<std::ptrdiff_t>(i));
  }
  return guests;
}

// In order of appearance. Those that give way share the last layer whose voices they never meet.
void OrderLayers(const Model& model, Part& part, int staff, VoiceOrder order) {
  std::map<std::uint16_t, Company> company;
  if (order.size() > kLayers) company = CompanyOn(model, part, staff);
  const VoiceOrder guests = TakeGuests(company, order);
  for (std::size_t i = 0; i < order.size(); ++i) {
    VoiceHome& home = HomeAt(part, order[i], staff);
    home.layer = static_cast<short>(std::min<std::size_t>(i, kLayers - 1));
    home.surplus = i >= kLayers;
  }
  for (const std::uint16_t guest : guests) {
    const std::set<std::uint16_t>& others = company[guest].voices;
    short layer = kLayers - 1;
    const auto meets = [&](std::uint16_t other) { return HomeAt(part, other, staff).layer == layer; };
    while (layer > 0 && std::any_of(others.begin(), others.end(), meets)) --layer;
    VoiceHome& home = HomeAt(part, guest, staff);
    home.layer = layer;
    home.surplus = true;
  }
}

// Kept for the whole part: layers must not move from measure to measure.
void AssignLayers(const Model& model, Part& part) {
  std::vector<VoiceOrder> orders(static_cast<std::size_t>(part.staves));
  for (std::size_t measure = 0; measure < part.measures.size(); ++measure) {
    const PartMeasure& cell = part.measures[measure];
    for (std::uint32_t i = cell.first_voice; i < cell.first_voice + cell.voice_count; ++i) {
      Settle(part, part.cells[i], measure, orders[static_cast<std::size_t>(part.cells[i].home - 1)]);
    }
  }
  for (int staff = 1; staff <= part.staves; ++staff) {
    OrderLayers(model, part, staff, std::move(orders[static_cast<std::size_t>(staff - 1)]));
  }
  for (VoiceMeasure& cell : part.cells) {
    cell.layer = static_cast<std::uint8_t>(part.voices[cell.voice].HomeOn(cell.home)->layer);
  }
}

bool IsVisited(const Model& model, const PartMeasure& cell, short slot) {
  const Part& part = model.PartOf(slot);
  const int staff = model.StaffOf(slot);
  const auto first = part.cells.begin() + cell.first_voice;
  return std::any_of(first, first + cell.voice_count, [&](const VoiceMeasure& voice) {
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

const PartMeasure* Model::PartMeasureOf(short slot, short measure) const {
  if (!Holds(slot, measure)) return nullptr;
  const Part& part = PartOf(slot);
  const auto index = static_cast<std::size_t>(measure - 1);
  return index < part.measures.size() ? &part.measures[index] : nullptr;
}

bool Model::IsWholeRest(const VoiceMeasure& voice, short measure) const {
  if (voice.entry_count != 1) return false;
  const Entry& entry = entries[voice.first_entry];
  if ((entry.flags & kRest) == 0 || (entry.flags & kGrace) != 0) return false;
  if ((entry.flags & kBarRest) != 0) return true;
  const Fraction& length = lengths[static_cast<std::size_t>(measure - 1)];
  return (entry.flags & kUntyped) != 0 ? SameLength(voice.length, length) : entry.duration == kWholeRestDuration;
}

bool Model::IsHiddenRest(const VoiceMeasure& voice, short measure) const {
  return (entries[voice.first_entry].flags & kHidden) != 0 && IsWholeRest(voice, measure);
}

bool Model::IsLeftOut(const VoiceMeasure& voice, short measure) const {
  return options.hidden_rests == HiddenRests::kEmpty && IsHiddenRest(voice, measure);
}

bool Model::HandsOut(short slot, short measure, short layer) const {
  const PartMeasure* cell = PartMeasureOf(slot, measure);
  if (cell == nullptr || (options.layers >> layer & 1) == 0) return false;
  bool own = false;
  bool kept = false;
  ForEachVoice(slot, measure, layer, [&](const Voice&, const VoiceMeasure& voice) {
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
    AssignLayers(model, part);
    for (int staff = 1; staff <= part.staves; ++staff, ++slot) {
      if (slot == 32767) throw Error("the score has too many staves");
      model.staves.push_back(
          {part.id, part.name, part.abbreviation, static_cast<int>(index), staff, part.staves, slot});
    }
  }
}

LayerFacts FactsOf(const Model& model, short slot, short measure, short layer) {
  LayerFacts facts;
  const int staff = model.Holds(slot, measure) ? model.StaffOf(slot) : 0;
  const VoiceMeasure* first = nullptr;
  int sharing = 0;
  bool bar_rest = false;
  bool any_cue = false;
  bool no_full_notes = true;
  facts.hidden = true;
  model.ForEachVoice(slot, measure, layer, [&](const Voice& owner, const VoiceMeasure& voice) {
    ++sharing;
    if (first == nullptr) {
      first = &voice;
      facts.voice = owner.name;
    }
    if (!model.IsLeftOut(voice, measure)) facts.entry_count += static_cast<int>(voice.entry_count);
    facts.hidden = facts.hidden && voice.all_hidden;
    facts.cross_staff = facts.cross_staff || (voice.drawn_on & ~StaffBit(staff)) != 0;
    no_full_notes = no_full_notes && voice.no_full_notes;
    for (std::uint32_t i = 0; i < voice.entry_count; ++i) {
      const std::uint8_t flags = model.entries[voice.first_entry + i].flags;
      facts.grace = facts.grace || (flags & kGrace) != 0;
      any_cue = any_cue || (flags & kCue) != 0;
      bar_rest = bar_rest || (flags & kBarRest) != 0;
    }
  });
  if (first == nullptr) return {};
  const Entry& entry = model.entries[first->first_entry];
  const bool lone = sharing == 1 && first->entry_count == 1 && (entry.flags & kRest) != 0;
  const bool full = lone && model.IsWholeRest(*first, measure);
  facts.surplus = sharing > 1;
  facts.bar_rest_beside = bar_rest && facts.entry_count > 1;
  facts.whole_rest = full && facts.entry_count == 1;
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
  const PartMeasure* cell = model.PartMeasureOf(slot, measure);
  around.visited = cell != nullptr && IsVisited(model, *cell, slot);
  return around;
}

}  // namespace sok
