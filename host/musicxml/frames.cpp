#include "host/musicxml/frames.h"

#include <algorithm>
#include <array>

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace sok {
namespace {

constexpr int kTopLine = 10;  // steps from middle C, treble clef; rests hang from it
constexpr unsigned short kRestHostWord = 0x0080;
constexpr std::uint32_t kMostEntries = 32767;

template <std::size_t size>
void Put(std::array<unsigned char, size>& record, std::size_t offset, int value) {
  record[offset] = static_cast<unsigned char>(value);
  record[offset + 1] = static_cast<unsigned char>(value >> 8);
}

void SetNote(EXNOTE& note, int identifier, int first, int second) {
  note.first = static_cast<short>(first);
  note.second = static_cast<short>(second);
  note.identifier = static_cast<short>(identifier);
  note.flags = kNoteLegal | static_cast<unsigned int>(identifier) << 16;
}

}  // namespace

int MiddleLine(const Model& model, short slot) {
  return model.PartOf(slot).clef_middles[static_cast<std::size_t>(model.StaffOf(slot) - 1)];
}

short ModelFrames::Count(const FramePlace& place) const {
  std::uint32_t count = 0;
  model_.ForEachVoice(place.instrument, place.measure, place.layer, [&](const Voice&, const VoiceMeasure& voice) {
    if (!model_.IsLeftOut(voice, place.measure)) count += voice.entry_count;
  });
  return static_cast<short>(std::min(count, kMostEntries));
}

void ModelFrames::Fill(const FramePlace& place, EXENTRY* entries) const {
  std::uint32_t count = 0;
  model_.ForEachVoice(place.instrument, place.measure, place.layer, [&](const Voice&, const VoiceMeasure& voice) {
    if (model_.IsLeftOut(voice, place.measure)) return;
    for (std::uint32_t i = 0; i < voice.entry_count && count < kMostEntries; ++i, ++count) {
      FillOne({&voice, place}, i, entries[count]);
    }
  });
}

void ModelFrames::FillOne(const Spot& spot, std::uint32_t index, EXENTRY& entry) const {
  const Entry& from = model_.entries[spot.voice->first_entry + index];
  const bool whole = model_.IsWholeRest(*spot.voice, spot.place.measure);
  entry.number = static_cast<int>(spot.voice->first_entry + index + 1);
  entry.duration = whole ? kWholeRestDuration : from.duration;
  entry.flags = kEntryLegal | ((from.flags & kGrace) != 0 ? kEntryIsGrace : 0);
  entry.noteCount = from.note_count;
  if ((from.flags & kRest) != 0) {
    const bool placed = (from.flags & kPlaced) != 0;
    entry.flags |= kEntryHasRestNote | (whole || placed ? kEntryRestPlaced : 0);
    if (whole) entry.host12 = kRestHostWord;
    const int step = placed  ? model_.pitches[from.first_pitch].step
                     : whole ? MiddleLine(model_, spot.place.instrument)
                             : 0;
    SetNote(entry.notes[0], 1, step, 0);
    return;
  }
  entry.flags |= kEntryIsNote;
  for (int n = 0; n < from.note_count; ++n) {
    const Pitch& pitch = model_.pitches[from.first_pitch + static_cast<std::uint32_t>(n)];
    SetNote(entry.notes[n], n + 1, pitch.step, pitch.alter);
    entry.notes[n].flags |= (pitch.ties & kTieStart) != 0 ? kNoteTieStart : 0;
    entry.notes[n].flags |= (pitch.ties & kTieStop) != 0 ? kNoteTieStop : 0;
  }
}

ModelFrames::Spot ModelFrames::SpotOf(int number) const {
  if (number < 1 || number > LastNumber()) return {};
  const auto entry = static_cast<std::uint32_t>(number - 1);
  const auto holds = [entry](const VoiceMeasure& voice) { return entry - voice.first_entry < voice.entry_count; };
  if (last_.voice != nullptr && holds(*last_.voice)) return last_;
  const auto hint = last_.voice == nullptr ? 0 : static_cast<std::size_t>(model_.StaffAt(last_.place.instrument).part);
  for (std::size_t i = 0; i < model_.parts.size(); ++i) {
    const Part& part = model_.parts[(hint + i) % model_.parts.size()];
    // Both the voices of a part and its measures stand in the order of their entries.
    const auto behind = std::ranges::upper_bound(part.cells, entry, {}, &VoiceMeasure::first_entry);
    if (behind == part.cells.begin() || !holds(*(behind - 1))) continue;
    const VoiceMeasure& voice = *(behind - 1);
    const auto index = static_cast<std::uint32_t>(&voice - part.cells.data());
    const auto cell = std::ranges::upper_bound(part.measures, index, {}, &PartMeasure::first_voice) - 1;
    const auto measure = static_cast<short>(cell - part.measures.begin() + 1);
    if (model_.IsLeftOut(voice, measure)) return {};
    return last_ = {&voice, {static_cast<short>(part.first_slot + voice.home - 1), measure, voice.layer}};
  }
  return {};
}

std::optional<EntrySource::Position> ModelFrames::Find(int number) const {
  const Spot spot = SpotOf(number);
  if (spot.voice == nullptr) return std::nullopt;
  const auto& [instrument, measure, layer] = spot.place;
  std::uint32_t at = static_cast<std::uint32_t>(number - 1) - spot.voice->first_entry;
  bool before = true;
  model_.ForEachVoice(instrument, measure, layer, [&](const Voice&, const VoiceMeasure& other) {
    before = before && &other != spot.voice;
    if (before && !model_.IsLeftOut(other, spot.place.measure)) at += other.entry_count;
  });
  if (at >= kMostEntries) return std::nullopt;
  return Position{spot.place, static_cast<short>(at)};
}

std::optional<ModelFrames::Origin> ModelFrames::OriginOf(int number) const {
  const Spot spot = SpotOf(number);
  if (spot.voice == nullptr) return std::nullopt;
  Origin origin{spot.place, {}, model_.IsWholeRest(*spot.voice, spot.place.measure)};
  FillOne(spot, static_cast<std::uint32_t>(number - 1) - spot.voice->first_entry, origin.entry);
  return origin;
}

void FillDocument(const Model& model, Document& document) {
  for (std::size_t i = 0; i < model.staves.size(); ++i) {
    const short instrument = document.AddStaff();
    EDataID id{};
    id.other = {static_cast<unsigned short>(instrument), 0};
    EDTInstDefinition definition{};
    definition.restPlacement = static_cast<short>((MiddleLine(model, instrument) - kTopLine) * 256);
    document.records.Save(record_tags::kInstrument, id, &definition, sizeof definition);
    std::array<unsigned char, sizeof(EDTInstrumentUsed)> used{};
    Put(used, 0, instrument);
    id.other = {0, static_cast<short>(i)};
    document.records.Save(record_tags::kInstrumentUsed, id, used.data(), static_cast<int>(used.size()));
  }
  for (const Measure& measure : model.measures) {
    const short number = document.AddMeasure(measure.duration);
    EDataID id{};
    id.other = {static_cast<unsigned short>(number), 0};
    // The length as beats and beat length: whole quarters where it is made of them, else the finest beat there is.
    std::array<unsigned char, sizeof(EDTMeasureSpec2014)> record{};
    const int beat = measure.duration % 1024 == 0 ? 1024 : measure.duration % 512 == 0 ? 512 : 1;
    Put(record, 4, std::min(measure.duration / beat, 32767));
    Put(record, 6, beat);
    document.records.Save(record_tags::kMeasure, id, record.data(), static_cast<int>(record.size()));
  }
}

bool SameMusic(const EXENTRY& a, const EXENTRY& b) {
  constexpr unsigned int kTidied = kEntryHasRestNote;
  if (a.number != b.number || a.duration != b.duration || (a.flags & ~kTidied) != (b.flags & ~kTidied)) return false;
  if ((a.flags & kEntryIsNote) == 0) return PlaceOfRest(a) == PlaceOfRest(b);
  if (a.noteCount != b.noteCount) return false;
  for (int i = 0; i < std::min<int>(a.noteCount, EXENTRY::kMostNotes); ++i) {
    if (a.notes[i].first != b.notes[i].first || a.notes[i].second != b.notes[i].second) return false;
    if (((a.notes[i].flags ^ b.notes[i].flags) & kNoteTies) != 0) return false;
  }
  return true;
}

}  // namespace sok
