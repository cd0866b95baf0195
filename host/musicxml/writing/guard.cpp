#include "host/musicxml/writing/guard.h"

#include <algorithm>
#include <tuple>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/errors.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/reading/reader.h"
#include "host/musicxml/text/markup.h"

namespace sok {
namespace {

// One voice of a measure, as two readings of it are compared.
struct Trace {
  std::string_view voice;
  int staff;
  std::uint64_t fingerprint;
  std::uint32_t entries;
  bool full_rest;      // the first entry is a rest that may last the whole measure
  std::uint32_t cell;  // index in Part::cells
};

bool operator<(const Trace& a, const Trace& b) { return std::tie(a.voice, a.staff) < std::tie(b.voice, b.staff); }

std::vector<Trace> TracesOf(const Model& model, const Part& part, const PartMeasure& cell) {
  std::vector<Trace> traces;
  for (std::uint32_t i = 0; i < cell.voice_count; ++i) {
    const VoiceMeasure& voice = part.cells[cell.first_voice + i];
    const Voice& owner = part.voices[voice.voice];
    const Entry& first = model.entries[voice.first_entry];
    const bool marked = (first.flags & (kBarRest | kUntyped)) != 0 || first.duration == kWholeRestDuration;
    const bool full_rest = marked && (first.flags & kRest) != 0;
    traces.push_back(
        {owner.name, owner.key_staff, voice.fingerprint, voice.entry_count, full_rest, cell.first_voice + i});
  }
  std::sort(traces.begin(), traces.end());
  return traces;
}

std::vector<Trace>::iterator Find(const VoiceChange& change, std::vector<Trace>& traces) {
  return std::find_if(traces.begin(), traces.end(),
                      [&](const Trace& trace) { return trace.voice == change.voice && trace.staff == change.staff; });
}

// Whether an entry that was read again is the one that was saved.
bool IsSaved(const Model& model, const Entry& entry, const EXENTRY& saved, bool lone) {
  const bool rest = (entry.flags & kRest) != 0;
  if (rest == ((saved.flags & kEntryIsNote) != 0)) return false;
  const bool whole = rest && lone && saved.duration == kWholeRestDuration;
  if (whole ? (entry.flags & (kBarRest | kUntyped)) == 0 && entry.duration != saved.duration
            : entry.duration != saved.duration) {
    return false;
  }
  if (rest) {
    const bool placed = (entry.flags & kPlaced) != 0;
    return placed == ((saved.flags & kEntryRestPlaced) != 0) &&
           (!placed || model.pitches[entry.first_pitch].step == PlaceOfRest(saved));
  }
  if (entry.note_count != saved.noteCount) return false;
  for (int i = 0; i < saved.noteCount; ++i) {
    const Pitch& pitch = model.pitches[entry.first_pitch + static_cast<std::uint32_t>(i)];
    if (pitch.step != saved.notes[i].first || pitch.alter != saved.notes[i].second) return false;
    if (((pitch.ties & kTieStart) != 0) != ((saved.notes[i].flags & kNoteTieStart) != 0)) return false;
    if (((pitch.ties & kTieStop) != 0) != ((saved.notes[i].flags & kNoteTieStop) != 0)) return false;
  }
  return true;
}

// `drawn_before` are the staves that the voice was drawn on: it may live on another one of them now, where more of its
// notes stand.
bool IsAsSaved(const Model& again, const VoiceChange& change, const Trace& trace, std::uint64_t drawn_before) {
  if (change.entries.empty()) return trace.entries == 1 && trace.full_rest;
  const VoiceMeasure& voice = again.parts[0].cells[trace.cell];
  const bool at_home = change.home == 0 || voice.home == change.home || (drawn_before & StaffBit(voice.home)) != 0;
  if (!at_home || voice.entry_count != change.entries.size()) return false;
  for (std::uint32_t i = 0; i < voice.entry_count; ++i) {
    if (!IsSaved(again, again.entries[voice.first_entry + i], change.entries[i], voice.entry_count == 1)) return false;
  }
  return true;
}

// Takes the voices that were to go out of `before` and those that were to come out of `after`; false when one of them
// is not there, or is not what was to come.
bool TakeNamed(const Part& part, const Model& again, const VoiceChange& change, std::vector<Trace>& before,
               std::vector<Trace>& after) {
  std::uint64_t drawn_before = 0;
  if (change.was) {
    const auto at = Find(change, before);
    if (at == before.end()) return false;
    drawn_before = part.cells[at->cell].drawn_on;
    before.erase(at);
  }
  if (change.is) {
    const auto at = Find(change, after);
    if (at == after.end() || !IsAsSaved(again, change, *at, drawn_before)) return false;
    after.erase(at);
  }
  return true;
}

}  // namespace

void Guard::Read(std::string_view measure, const Fraction& divisions) {
  text_ = measure;
  const bool parsed = tree_.load_buffer_inplace(text_.data(), text_.size(), kMusicOnly, pugi::encoding_utf8);
  if (!parsed || tree_.first_child().next_sibling()) throw Error("not well-formed XML");
  again_.parts.assign(1, Part());
  again_.entries.clear();
  again_.pitches.clear();
  PartState state;
  state.divisions = divisions;
  reader_.Read(0, state, tree_.document_element(), 0, text_.size());
}

bool Guard::Passes(const Part& part, const PartMeasure& cell, std::string_view patched,
                   const std::vector<VoiceChange>& voices) {
  try {
    Read(patched, cell.divisions);
  } catch (const Error&) {
    return false;
  }
  const PartMeasure& is = again_.parts[0].measures[0];
  std::vector<Trace> before = TracesOf(model_, part, cell);
  std::vector<Trace> after = TracesOf(again_, again_.parts[0], is);
  bool relaid = false;  // then what stands among the notes moves with them
  for (const VoiceChange& change : voices) {
    if (!TakeNamed(part, again_, change, before, after)) return false;
    relaid = relaid || change.home != 0;
  }
  const auto same = [](const Trace& a, const Trace& b) {
    return a.voice == b.voice && a.staff == b.staff && a.fingerprint == b.fingerprint && a.entries == b.entries;
  };
  return std::equal(before.begin(), before.end(), after.begin(), after.end(), same) && cell.names == is.names &&
         (relaid || cell.fingerprint == is.fingerprint);
}

}  // namespace sok
