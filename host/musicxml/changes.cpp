#include "host/musicxml/changes.h"

#include <algorithm>
#include <tuple>

namespace sok {
namespace {

bool IsNewWholeRest(const EXENTRY& entry, int last_known) {
  return entry.duration == kWholeRestDuration && (entry.flags & kEntryIsNote) == 0 && entry.number > last_known;
}

// False: the frames are the same.
bool Compare(std::span<const EXENTRY> before, std::span<const EXENTRY> after, int last_known, ChangeKind& kind) {
  const auto same = [](const EXENTRY& a, const EXENTRY& b) { return SameMusic(a, b); };
  if (std::equal(before.begin(), before.end(), after.begin(), after.end(), same)) return false;
  kind = ChangeKind::kOther;
  if (after.empty()) {
    kind = ChangeKind::kCleared;
  } else if (IsNewWholeRest(after.front(), last_known) &&
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
    before.resize(static_cast<std::size_t>(frames.Count(place)));
    if (!before.empty()) frames.Fill(place, before.data());
    Change change;
    if (!Compare(before, after, frames.LastNumber(), change.kind)) return;
    change.slot = place.instrument;  // instruments are numbered by slot
    change.measure = place.measure;
    change.layer = place.layer;
    changes.push_back(std::move(change));
  });
  std::sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) {
    return std::tie(a.measure, a.slot, a.layer) < std::tie(b.measure, b.slot, b.layer);
  });
  return changes;
}

}  // namespace sok
