#include "host/musicxml/guard.h"

#include <algorithm>
#include <map>

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "host/musicxml/markup.h"
#include "host/musicxml/reader.h"

namespace sok {
namespace {

// One voice of a measure, as two readings of it are compared.
struct Trace {
  std::string_view voice;
  int staff;
  std::uint64_t fingerprint;
  std::uint32_t entries;
  bool full_rest;  // the first entry is a rest that may last the whole measure
  auto operator<=>(const Trace&) const = default;
};

std::vector<Trace> TracesOf(const Model& model, const Part& part, const Cell& cell) {
  std::vector<Trace> traces;
  for (std::uint32_t i = 0; i < cell.voices; ++i) {
    const VoiceCell& voice = part.cells[cell.first_voice + i];
    const Voice& owner = part.voices[voice.voice];
    const Entry& first = model.entries[voice.first_entry];
    const bool marked = (first.flags & (kBarRest | kUntyped)) != 0 || first.duration == kWholeRestDuration;
    const bool full_rest = marked && (first.flags & kRest) != 0;
    traces.push_back({owner.name, owner.key_staff, voice.fingerprint, voice.entries, full_rest});
  }
  std::sort(traces.begin(), traces.end());
  return traces;
}

bool TakeOut(const VoiceChange& change, std::vector<Trace>& traces, bool is_full_rest) {
  const auto at = std::find_if(traces.begin(), traces.end(), [&](const Trace& trace) {
    return trace.voice == change.voice && trace.staff == change.staff;
  });
  if (at == traces.end() || (is_full_rest && (at->entries != 1 || !at->full_rest))) return false;
  traces.erase(at);
  return true;
}

// Takes the voices that were to go out of `before` and those that were to come out of `after`; false when one of them
// is not there, or is not what was to come.
bool TakeNamed(const VoiceChange& change, std::vector<Trace>& before, std::vector<Trace>& after) {
  return (!change.was || TakeOut(change, before, false)) && (!change.is || TakeOut(change, after, true));
}

bool SameBeside(const Model& model, const Part& part, const Cell& cell, std::string_view patched,
                const std::vector<const VoiceChange*>& voices) {
  Model again;
  try {
    again = ReadCell(patched, cell.divisions, model.options);
  } catch (const std::runtime_error&) {
    return false;
  }
  const Cell& is = again.parts[0].measures[0];
  std::vector<Trace> before = TracesOf(model, part, cell);
  std::vector<Trace> after = TracesOf(again, again.parts[0], is);
  for (const VoiceChange* change : voices) {
    if (!TakeNamed(*change, before, after)) return false;
  }
  return before == after && cell.fingerprint == is.fingerprint;
}

}  // namespace

void CheckPatchedText(const Model& model, std::string_view text, std::string_view patched,
                      const std::vector<VoiceChange>& voices) {
  std::map<std::size_t, std::vector<const VoiceChange*>> by_cell;  // by offset
  for (const VoiceChange& change : voices) {
    const Part& part = model.parts[static_cast<std::size_t>(change.part)];
    by_cell[part.measures[static_cast<std::size_t>(change.measure - 1)].offset].push_back(&change);
  }
  std::size_t was = 0;  // both texts agree up to here
  std::size_t is = 0;
  for (const auto& [offset, changes] : by_cell) {
    const Part& part = model.parts[static_cast<std::size_t>(changes.front()->part)];
    const auto measure = static_cast<std::size_t>(changes.front()->measure - 1);
    const std::size_t length = offset - was;
    bool same = text.substr(was, length) == patched.substr(std::min(is, patched.size()), length);
    if (same) {
      is += length;
      const std::size_t end = ElementEnd(patched, is);
      same = SameBeside(model, part, part.measures[measure], patched.substr(is, end - is), changes);
      was = ElementEnd(text, offset);
      is = end;
    }
    if (!same) {
      throw WriteError(offset, "part " + part.id + ", " + MeasureLabel(model.measures, measure + 1) +
                                   " would come out changed beyond what was asked for; nothing is written");
    }
  }
  if (text.substr(was) != patched.substr(is)) {
    throw WriteError(was, "the text would come out changed outside of the changed measures; nothing is written");
  }
}

}  // namespace sok
