#include "host/musicxml/writing/changes.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "host/musicxml/records/tuplets.h"

namespace sok {
namespace {

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }

// As `fill` puts them in: on the middle line, or without a place of their own.
bool IsNewWholeRest(const EXENTRY& entry, int last_known, int middle_line) {
  const short place = PlaceOfRest(entry);
  const bool placed = (entry.flags & kEntryRestPlaced) != 0 || place != 0;
  return entry.duration == kWholeRestDuration && !IsNote(entry) && entry.number > last_known &&
         (!placed || place == middle_line);
}

bool SamePitches(const EXENTRY& a, const EXENTRY& b) {
  const auto same = [](const EXNOTE& x, const EXNOTE& y) { return x.first == y.first && x.second == y.second; };
  return a.noteCount == b.noteCount && std::equal(a.notes, a.notes + a.noteCount, b.notes, same);
}

bool SamePlace(const EXENTRY& a, const EXENTRY& b) {
  return PlaceOfRest(a) == PlaceOfRest(b) && ((a.flags ^ b.flags) & kEntryRestPlaced) == 0;
}

// Notes that came or went have not changed their ties.
bool SameTies(const EXENTRY& a, const EXENTRY& b) {
  const auto same = [](const EXNOTE& x, const EXNOTE& y) { return ((x.flags ^ y.flags) & kNoteTies) == 0; };
  return std::equal(a.notes, a.notes + std::min(a.noteCount, b.noteCount), b.notes, same);
}

// How long entries sound. A whole-measure rest is as long as its measure.
int LengthOf(std::span<const EXENTRY> entries, int measure, const std::map<int, TupletRecord>& tuplets) {
  if (entries.size() == 1 && !IsNote(entries[0]) && entries[0].duration == kWholeRestDuration) return measure;
  double length = 0;
  for (const EXENTRY& entry : entries) {
    if ((entry.flags & kEntryIsGrace) != 0) continue;
    const auto at = tuplets.find(int{entry.number});
    const double ratio = at == tuplets.end() ? 1.0 : static_cast<double>(at->second.in_time_of) / at->second.notes;
    length += entry.duration * ratio;
  }
  return static_cast<int>(std::lround(length));
}

std::string EditsOf(std::span<const EXENTRY> before, std::span<const EXENTRY> after, int measure,
                    const Document& document) {
  std::map<int, const EXENTRY*> known;
  for (const EXENTRY& entry : before) known[int{entry.number}] = &entry;
  int came = 0, values = 0, pitches = 0, kinds = 0, marks = 0, ties = 0, places = 0;
  for (const EXENTRY& entry : after) {
    const auto at = known.find(int{entry.number});
    if (at == known.end()) {
      ++came;
      continue;
    }
    const EXENTRY& was = *at->second;
    known.erase(at);
    values += was.duration != entry.duration ? 1 : 0;
    kinds += IsNote(was) != IsNote(entry) ? 1 : 0;
    const bool notes = IsNote(was) && IsNote(entry);
    pitches += notes && !SamePitches(was, entry) ? 1 : 0;
    ties += notes && !SameTies(was, entry) ? 1 : 0;
    places += !IsNote(was) && !IsNote(entry) && !SamePlace(was, entry) ? 1 : 0;
    marks += ((was.flags ^ entry.flags) & kEntryHasArticulations) != 0 ? 1 : 0;
  }
  std::string text;
  const auto say = [&](int count, const char* one, const char* many) {
    if (count > 0) text += (text.empty() ? "" : ", ") + std::to_string(count) + (count == 1 ? one : many);
  };
  say(values, " value changed", " values changed");
  say(pitches, " entry has other pitches", " entries have other pitches");
  say(kinds, " note or rest became the other", " notes and rests became the other");
  say(places, " rest stands elsewhere", " rests stand elsewhere");
  say(ties, " entry is tied otherwise", " entries are tied otherwise");
  say(marks, " entry has articulations", " entries have articulations");
  say(came, " entry in", " entries in");
  say(static_cast<int>(known.size()), " entry out", " entries out");
  if (text.empty()) text = "the order of its entries changed";
  const std::map<int, TupletRecord> tuplets = TupletsIn(document, before);
  const int length = LengthOf(after, measure, tuplets);
  if (length > measure && length > LengthOf(before, measure, tuplets)) text += ", longer than its measure now";
  return text;
}

// False: the frames are the same.
bool Compare(std::span<const EXENTRY> before, std::span<const EXENTRY> after, int last_known, int middle_line,
             ChangeKind& kind) {
  const auto same = [](const EXENTRY& a, const EXENTRY& b) { return SameMusic(a, b); };
  if (std::equal(before.begin(), before.end(), after.begin(), after.end(), same)) return false;
  kind = ChangeKind::kOther;
  if (after.empty()) {
    kind = ChangeKind::kCleared;
  } else if (IsNewWholeRest(after.front(), last_known, middle_line) &&
             std::equal(before.begin(), before.end(), after.begin() + 1, after.end(), same)) {
    kind = ChangeKind::kFilled;
  }
  return true;
}

}  // namespace

std::vector<Change> FindChanges(const Model& model, const Document& document) {
  const ModelFrames frames(model);
  std::vector<Change> changes;
  std::vector<EXENTRY> before;
  document.ForEachSetFrame([&](const FramePlace& place, std::span<const EXENTRY> after) {
    before.assign(static_cast<std::size_t>(frames.Count(place)), EXENTRY{});
    if (!before.empty()) frames.Fill(place, before.data());
    Change change;
    if (!Compare(before, after, frames.LastNumber(), MiddleLine(model, place.instrument), change.kind)) return;
    change.slot = place.instrument;  // instruments are numbered by slot
    change.measure = place.measure;
    change.layer = place.layer;
    changes.push_back(change);
  });
  std::sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) {
    return std::tie(a.measure, a.slot, a.layer) < std::tie(b.measure, b.slot, b.layer);
  });
  return changes;
}

std::string EditsOf(const Model& model, const Document& document, const Change& change) {
  const FramePlace place{change.slot, change.measure, change.layer};
  const ModelFrames frames(model);
  std::vector<EXENTRY> before(static_cast<std::size_t>(frames.Count(place)));
  if (!before.empty()) frames.Fill(place, before.data());
  return EditsOf(before, document.Entries(place), document.MeasureDuration(place.measure), document);
}

}  // namespace sok
