#include "host/musicxml/frame_plans.h"

#include <algorithm>

#include "host/musicxml/note_text.h"

namespace sok {
FramePlans::FramePlans(const Model& model, const Document& document, const std::vector<Change>& changes)
    : model_(model), document_(document), read_(model) {
  for (const Change& change : changes) {
    if (change.kind == ChangeKind::kFilled) continue;
    const auto part = static_cast<std::size_t>(model.StaffAt(change.slot).part);
    const Part& owner = model.parts[part];
    model.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice&, const VoiceCell& voice) {
      FindLooseEnds({part, static_cast<std::size_t>(change.measure - 1),
                     static_cast<std::uint32_t>(&voice - owner.cells.data())});
    });
  }
}

// The entry of the voice before or behind one measure's; 0: none.
int FramePlans::Follower(const VoicePlace& at, int step) const {
  const Part& part = model_.parts[at.part];
  const std::size_t measure = at.measure + static_cast<std::size_t>(step);
  if (measure >= part.measures.size()) return 0;
  const Cell& cell = part.measures[measure];
  for (std::uint32_t i = cell.first_voice; i < cell.first_voice + cell.voices; ++i) {
    const VoiceCell& voice = part.cells[i];
    if (voice.voice == part.cells[at.voice].voice)
      return static_cast<int>(voice.first_entry + (step > 0 ? 1 : voice.entries));
  }
  return 0;
}

void FramePlans::FindLooseEnds(const VoicePlace& at) {
  const VoiceCell& voice = model_.parts[at.part].cells[at.voice];
  const int first = static_cast<int>(voice.first_entry + 1);
  const int last = first + static_cast<int>(voice.entries) - 1;
  if (const int before = Follower(at, -1); before != 0) CheckTie(before, first);
  for (int number = first; number < last; ++number) CheckTie(number, number + 1);
  if (const int behind = Follower(at, 1); behind != 0) CheckTie(last, behind);
}

// Two entries that follow each other: ties between them end where they do not hold any more.
void FramePlans::CheckTie(int first, int second) {
  const Entry& a = model_.entries[static_cast<std::size_t>(first - 1)];
  const Entry& b = model_.entries[static_cast<std::size_t>(second - 1)];
  if (((a.flags | b.flags) & kRest) != 0) return;
  for (std::size_t i = 0; i < a.notes; ++i) {
    const Pitch& start = model_.pitches[a.pitch + i];
    if ((start.ties & kTieStart) == 0) continue;
    for (std::size_t j = 0; j < b.notes; ++j) {
      const Pitch& stop = model_.pitches[b.pitch + j];
      if ((stop.ties & kTieStop) == 0 || stop.step != start.step || stop.alter != start.alter) continue;
      if (StillTied(first, i, second, j)) continue;
      loose_ends_[first].push_back({i, kTieStart});
      loose_ends_[second].push_back({j, kTieStop});
    }
  }
}

// What has become of a note; null when it is gone.
const EXNOTE* FramePlans::NoteNow(int number, std::size_t note, EXENTRY& entry) const {
  const auto origin = read_.OriginOf(number);
  const auto now = document_.FindEntry(number);
  if (!origin || !now) return nullptr;
  entry = document_.Entries(now->place)[static_cast<std::size_t>(now->index)];
  if ((entry.flags & kEntryIsNote) == 0) return nullptr;
  const std::vector<int> matched = MatchNotes(origin->entry, entry);
  const auto at = std::find(matched.begin(), matched.end(), static_cast<int>(note));
  return at == matched.end() ? nullptr : &entry.notes[at - matched.begin()];
}

bool FramePlans::FollowsStill(int first, int second) const {
  const auto a = document_.FindEntry(first), b = document_.FindEntry(second);
  if (!a || !b) return false;
  if (a->place == b->place) return b->index == a->index + 1;
  return b->place.measure == a->place.measure + 1 && b->index == 0 && a->index + 1 == document_.EntryCount(a->place);
}

bool FramePlans::StillTied(int first, std::size_t note, int second, std::size_t other) const {
  EXENTRY a{}, b{};
  const EXNOTE* start = NoteNow(first, note, a);
  const EXNOTE* stop = NoteNow(second, other, b);
  return start != nullptr && stop != nullptr && start->first == stop->first && start->second == stop->second &&
         FollowsStill(first, second);
}

}  // namespace sok
