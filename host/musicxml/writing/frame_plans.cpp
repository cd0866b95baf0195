#include "host/musicxml/writing/frame_plans.h"

#include <algorithm>

#include "host/errors.h"
#include "host/musicxml/writing/note_text.h"

namespace sok {
namespace {

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }
unsigned int FlagOf(TieEnd end) { return end == kTieStart ? kNoteTieStart : kNoteTieStop; }

bool HasTies(const EXENTRY& entry) {
  return IsNote(entry) && std::any_of(entry.notes, entry.notes + entry.noteCount,
                                      [](const EXNOTE& note) { return (note.flags & kNoteTies) != 0; });
}

}  // namespace

FramePlans::FramePlans(const Model& model, const Document& document, const std::vector<Change>& changes)
    : model_(model), document_(document), read_(model) {
  for (const Change& change : changes) {
    if (change.kind == ChangeKind::kFilled) continue;
    const auto part = static_cast<std::size_t>(model.StaffAt(change.slot).part);
    const Part& owner = model.parts[part];
    model.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice&, const VoiceMeasure& voice) {
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
  const PartMeasure& cell = part.measures[measure];
  for (std::uint32_t i = cell.first_voice; i < cell.first_voice + cell.voice_count; ++i) {
    const VoiceMeasure& voice = part.cells[i];
    if (voice.voice == part.cells[at.voice].voice) {
      return static_cast<int>(voice.first_entry + (step > 0 ? 1 : voice.entry_count));
    }
  }
  return 0;
}

void FramePlans::FindLooseEnds(const VoicePlace& at) {
  const VoiceMeasure& voice = model_.parts[at.part].cells[at.voice];
  const int first = static_cast<int>(voice.first_entry + 1);
  const int last = first + static_cast<int>(voice.entry_count) - 1;
  if (const int before = Follower(at, -1); before != 0) CheckTie(before, first);
  for (int number = first; number < last; ++number) CheckTie(number, number + 1);
  for (int number = first; number <= last; ++number) FindCutTies(number);
  if (const int behind = Follower(at, 1); behind != 0) CheckTie(last, behind);
}

// Two entries that follow each other: ties between them end where they do not hold any more.
void FramePlans::CheckTie(int first, int second) {
  const Entry& a = model_.entries[static_cast<std::size_t>(first - 1)];
  const Entry& b = model_.entries[static_cast<std::size_t>(second - 1)];
  if (((a.flags | b.flags) & kRest) != 0) return;
  for (std::size_t i = 0; i < a.note_count; ++i) {
    const Pitch& start = model_.pitches[a.first_pitch + i];
    if ((start.ties & kTieStart) == 0) continue;
    for (std::size_t j = 0; j < b.note_count; ++j) {
      const Pitch& stop = model_.pitches[b.first_pitch + j];
      if ((stop.ties & kTieStop) == 0 || stop.step != start.step || stop.alter != start.alter) continue;
      if (StillTied(first, i, second, j)) continue;
      Loosen(first, i, kTieStart);
      Loosen(second, j, kTieStop);
    }
  }
}

// Ends of an entry's ties whose flags an extension took away.
void FramePlans::FindCutTies(int number) {
  const Entry& read = model_.entries[static_cast<std::size_t>(number - 1)];
  if ((read.flags & kRest) != 0) return;
  for (std::size_t note = 0; note < read.note_count; ++note) {
    const std::uint8_t ties = model_.pitches[read.first_pitch + note].ties;
    if (ties == 0) continue;
    EXENTRY entry{};
    const EXNOTE* const now = NoteNow(number, note, entry);
    for (const TieEnd end : {kTieStart, kTieStop}) {
      if (now != nullptr && (ties & end) != 0 && (now->flags & FlagOf(end)) == 0) {
        loose_ends_[number].push_back({note, end});
      }
    }
  }
}

// One end of a tie that was read, unless it holds another note now.
void FramePlans::Loosen(int number, std::size_t note, TieEnd end) {
  EXENTRY entry{};
  const EXNOTE* const now = NoteNow(number, note, entry);
  const bool tied = now != nullptr && (now->flags & FlagOf(end)) != 0;
  if (!tied || !HasPartner(number, *now, end)) loose_ends_[number].push_back({note, end});
}

bool FramePlans::IsLoose(int number, std::size_t note, TieEnd end) const {
  const auto ends = loose_ends_.find(number);
  return ends != loose_ends_.end() && std::any_of(ends->second.begin(), ends->second.end(), [&](const LooseEnd& loose) {
           return loose.note == note && loose.end == end;
         });
}

// Whether the next entry of the layer, or the one before, has the same note with the other end of the tie. Grace notes
// may stand between.
bool FramePlans::HasPartner(int number, const EXNOTE& note, TieEnd end) const {
  const short step = end == kTieStart ? 1 : -1;
  const unsigned int other_end = kNoteTies & ~FlagOf(end);
  const auto is_partner = [&](const EXNOTE& other) {
    return other.first == note.first && other.second == note.second && (other.flags & other_end) != 0;
  };
  const auto spot = document_.FindEntry(number);
  FramePlace place = spot->place;
  std::vector<EXENTRY> entries = document_.Entries(place);
  for (std::ptrdiff_t i = spot->index + step;; i += step) {
    if (i < 0 || i >= std::ssize(entries)) {
      if (place.measure != spot->place.measure) return false;
      place.measure = static_cast<short>(place.measure + step);
      entries = document_.Entries(place);
      i = step > 0 ? 0 : std::ssize(entries) - 1;
      if (entries.empty()) return false;
    }
    const EXENTRY& entry = entries[static_cast<std::size_t>(i)];
    if (IsNote(entry) && std::any_of(entry.notes, entry.notes + entry.noteCount, is_partner)) return true;
    if ((entry.flags & kEntryIsGrace) == 0) return false;
  }
}

void FramePlans::SettleTies(EXENTRY& entry) const {
  if (!HasTies(entry)) return;
  const int number = entry.number;
  const auto origin = read_.OriginOf(number);
  const EXENTRY before = origin ? origin->entry : EXENTRY{};
  const std::vector<int> matched = MatchNotes(before, entry);
  for (std::size_t i = 0; i < matched.size(); ++i) {
    const int from = IsNote(before) ? matched[i] : -1;
    for (const TieEnd end : {kTieStart, kTieStop}) {
      EXNOTE& note = entry.notes[i];
      if ((note.flags & FlagOf(end)) == 0) continue;
      const bool had = from >= 0 && (before.notes[from].flags & FlagOf(end)) != 0;
      if (had ? !IsLoose(number, static_cast<std::size_t>(from), end) : HasPartner(number, note, end)) continue;
      if (!had && from >= 0) throw Error("entry " + std::to_string(number) + " is tied to no note of its pitch");
      note.flags &= ~FlagOf(end);
    }
  }
}

// What has become of a note; null when it is gone.
const EXNOTE* FramePlans::NoteNow(int number, std::size_t note, EXENTRY& entry) const {
  const auto origin = read_.OriginOf(number);
  const auto now = document_.FindEntry(number);
  if (!origin || !now) return nullptr;
  entry = document_.Entries(now->place)[static_cast<std::size_t>(now->index)];
  if (!IsNote(entry)) return nullptr;
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
         (start->flags & kNoteTieStart) != 0 && (stop->flags & kNoteTieStop) != 0 && FollowsStill(first, second);
}

}  // namespace sok
