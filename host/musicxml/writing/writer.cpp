#include "host/musicxml/writing/writer.h"

#include <algorithm>
#include <map>
#include <set>
#include <span>

#include "host/errors.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/writing/articulations.h"
#include "host/musicxml/writing/frame_plans.h"
#include "host/musicxml/writing/guard.h"
#include "host/musicxml/writing/measure_patch.h"

namespace sok {
namespace {

constexpr int kMostRefusals = 100;  // that are named

class Writer {
 public:
  Writer(const Model& model, const Document& document, std::string_view text, const std::vector<Change>& changes,
         const WriteOptions& options)
      : plans_(model, document, changes),
        frames_(model),
        model_(model),
        document_(document),
        text_(text),
        options_(options),
        guard_(model),
        style_(NoteStyle::Of(text, model.first_note)) {}

  // A measure at a time, in the order of the text. Nothing is kept of one that is written.
  std::string Write(const std::vector<Change>& changes) {
    const std::vector<Task> tasks = TasksOf(changes);
    std::string result;
    result.reserve(text_.size() + text_.size() / 4);  // what nobody writes to is no memory
    std::size_t from = 0;
    for (auto first = tasks.begin(); first != tasks.end();) {
      const Task& task = *first;
      const auto last =
          std::find_if(first, tasks.end(), [&](const Task& other) { return task.offset != other.offset; });
      result.append(text_, from, task.offset - from);
      Apply(task, {first, last}, result);
      from = task.offset + PartMeasureOf(task).size;
      first = last;
    }
    ThrowRefusals();
    result.append(text_, from);
    return result;
  }

 private:
  // Work in a measure of a part: a change, or none, only ties that lose their ends there.
  struct Task {
    std::size_t offset = 0;  // of the measure
    int part = 0;
    short measure = 0;
    const Change* change = nullptr;
  };

  const PartMeasure& PartMeasureOf(const Task& task) const {
    return model_.parts[static_cast<std::size_t>(task.part)].measures[static_cast<std::size_t>(task.measure - 1)];
  }

  // All measures of parts that change, or have a note tied to one that does, by offset and slot.
  std::vector<Task> TasksOf(const std::vector<Change>& changes) const {
    std::vector<Task> tasks;
    tasks.reserve(changes.size());
    for (const Change& change : changes) {
      tasks.push_back({PartMeasureOf(change).offset, model_.StaffAt(change.slot).part, change.measure, &change});
    }
    for (const auto& [entry, ends] : plans_.LooseEnds()) {
      const FramePlace place = frames_.Find(entry)->place;
      const PartMeasure& cell = *model_.PartMeasureOf(place.instrument, place.measure);
      tasks.push_back({cell.offset, model_.StaffAt(place.instrument).part, place.measure, nullptr});
    }
    std::ranges::stable_sort(tasks, {}, &Task::offset);
    return tasks;
  }

  // All changes of one measure of one part, by slot; the measure as it is to be comes behind the result.
  void Apply(const Task& place, std::span<const Task> tasks, std::string& result) {
    MeasurePatch patch(model_, text_, place.part, place.measure, style_);
    std::vector<const Change*> changes;
    for (const Task& task : tasks) {
      if (task.change != nullptr) changes.push_back(task.change);
    }
    std::vector<EntryRange> gone;
    std::vector<VoicePlan> relaid;
    voices_given_.clear();
    voices_.clear();
    Untie(patch, place.part, place.measure);
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kOther) Attempt(*change, [&] { Plan(patch, *change, relaid); });
      if (change->kind == ChangeKind::kCleared) Clear(patch, *change, gone);
    }
    for (const VoicePlan& plan : relaid) Attempt(*plan.change, [&] { patch.Relay(plan); });
    relaid.empty() ? patch.MendAccidentals() : Attempt(*relaid.front().change, [&] { patch.Settle(); });
    patch.Remove(gone);
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kFilled) Attempt(*change, [&] { Fill(patch, *change); });
    }
    const std::size_t begin = result.size();
    patch.AppendTo(result);
    if (refused_ == 0) Check(place, std::string_view(result).substr(begin));
  }

  void Check(const Task& place, std::string_view patched) {
    const Part& part = model_.parts[static_cast<std::size_t>(place.part)];
    if (guard_.Passes(part, PartMeasureOf(place), patched, voices_)) return;
    throw TextError(place.offset, "part " + part.id + ", " +
                                      MeasureLabel(model_.measures, static_cast<std::size_t>(place.measure)) +
                                      " would come out changed beyond what was asked for; nothing is written");
  }

  // Every change that cannot be written is named before nothing is.
  void ThrowRefusals() const {
    std::string all;
    for (const auto& [reason, places] : refusals_) all += (all.empty() ? "" : "; ") + reason + " (" + places + ")";
    if (refused_ > kMostRefusals) all += "; and " + std::to_string(refused_ - kMostRefusals) + " more";
    if (!refusals_.empty()) throw TextError(refused_at_, all);
  }

  const PartMeasure& PartMeasureOf(const Change& change) const {
    const PartMeasure* cell = model_.PartMeasureOf(change.slot, change.measure);
    if (cell == nullptr) {
      throw TextError(0, Place(change) + ": the part has no such measure");
    }
    return *cell;
  }

  std::string Place(const Change& change) const {
    return "staff " + std::to_string(change.slot) + ", " +
           MeasureLabel(model_.measures, static_cast<std::size_t>(change.measure)) + ", layer " +
           std::to_string(change.layer + 1);
  }

  VoiceChange& NameVoice(const std::string& voice, int staff) {
    return voices_.emplace_back(VoiceChange{voice, staff, false, false, {}, 0});
  }

  template <typename Work>
  void Attempt(const Change& change, Work work) try {
    work();
  } catch (const Error& refused) {
    if (refusals_.empty()) refused_at_ = PartMeasureOf(change).offset;
    if (++refused_ > kMostRefusals) return;
    std::string& places = refusals_[refused.what()];
    places += (places.empty() ? "" : "; ") + Place(change);
  }

  // Entries in frames that did not change lose the ends of ties to those that did.
  void Untie(MeasurePatch& patch, int part, short measure) const {
    const Part& owner = model_.parts[static_cast<std::size_t>(part)];
    const PartMeasure& cell = owner.measures[static_cast<std::size_t>(measure - 1)];
    for (std::uint32_t i = cell.first_voice; i < cell.first_voice + cell.voice_count; ++i) {
      const EntryRange range = EntryRange::Of(owner.cells[i]);
      const auto& ends = plans_.LooseEnds();
      for (auto at = ends.lower_bound(range.first); at != ends.end() && range.Holds(at->first); ++at) {
        for (const LooseEnd& end : at->second) patch.Untie(at->first, end.note, end.end);
      }
    }
  }

  // The text of an entry that was read, wherever it stands, without ends of ties that hold no more.
  WrittenEntry TextOf(const MeasurePatch& patch, const ModelFrames::Origin& origin) {
    const int number = origin.entry.number;
    WrittenEntry written = patch.SourceOf(number);
    if (written.notes.empty()) {
      const int part = model_.StaffAt(origin.place.instrument).part;
      MeasurePatch other(model_, text_, part, origin.place.measure, style_);
      Untie(other, part, origin.place.measure);
      written = other.SourceOf(number);
    }
    written.entry = origin.entry;
    written.whole = origin.whole;
    return written;
  }

  // The entries of a frame, every number of which has been handed out.
  std::vector<EXENTRY> EntriesOf(const Change& change) const {
    std::vector<EXENTRY> entries = document_.Entries({change.slot, change.measure, change.layer});
    for (const EXENTRY& entry : entries) {
      if (!document_.WasHandedOut(entry.number)) {
        throw Error("entry number " + std::to_string(entry.number) + " was never handed out");
      }
    }
    return entries;
  }

  PlannedEntry PlanEntry(const MeasurePatch& patch, const Change& change, const EXENTRY& entry, bool lone) {
    constexpr unsigned int kKnown =
        kEntryLegal | kEntryIsNote | kEntryHasRestNote | kEntryHasArticulations | kEntryRestPlaced;
    PlannedEntry planned;
    planned.entry = entry;
    planned.whole = lone && (entry.flags & kEntryIsNote) == 0 && entry.duration == kWholeRestDuration;
    if (const auto origin = frames_.OriginOf(entry.number)) {  // else it is new
      planned.source = entry.number;
      planned.from = TextOf(patch, *origin);
    }
    planned.measure = model_.lengths[static_cast<std::size_t>(change.measure - 1)];
    const bool shorter = entry.duration < planned.from.entry.duration;
    if (planned.whole && !planned.from.whole && shorter) planned.measure = LengthWithout(change.measure);
    SettleRest(planned, MiddleLine(model_, change.slot));
    plans_.SettleTies(planned.entry);
    if (((entry.flags ^ planned.from.entry.flags) & ~kKnown) != 0) {
      throw Error("entry " + std::to_string(entry.number) + " has flags that no score can hold");
    }
    if (entry.duration == 0) throw Error("entry " + std::to_string(entry.number) + " has no duration");
    if ((entry.flags & ~planned.from.entry.flags & kEntryHasArticulations) == 0) return planned;
    const auto signs = ArticulationsOn(document_, entry.number);
    if (!signs) throw Error("entry " + std::to_string(entry.number) + " has an articulation without a name");
    planned.articulations = *signs;
    return planned;
  }

  // How long a measure is without its whole-measure rests: one that was a longer rest has made the measure longer.
  Fraction LengthWithout(short measure) const {
    Fraction longest;
    for (std::size_t part = 0; part < model_.parts.size(); ++part) {
      if (static_cast<std::size_t>(measure) > model_.parts[part].measures.size()) continue;
      const OpenMeasure open(model_, text_, static_cast<int>(part), measure);
      std::map<int, const Item*> heads;
      for (std::size_t i = 0; i < open.parts.items.size(); ++i) {
        if (open.entries[i] != 0 && !open.parts.items[i].chord) heads[open.entries[i]] = &open.parts.items[i];
      }
      for (short staff = 0; staff < model_.parts[part].staves; ++staff) {
        for (short layer = 0; layer < kLayers; ++layer) {
          const short slot = static_cast<short>(model_.parts[part].first_slot + staff);
          longest = std::max(longest, LengthOf(document_.Entries({slot, measure, layer}), heads));
        }
      }
    }
    const auto index = static_cast<std::size_t>(measure - 1);
    if (!longest.IsZero()) return Reduced(longest);
    return model_.times[index].IsZero() ? model_.lengths[index] : std::min(model_.times[index], model_.lengths[index]);
  }

  // A lone whole-measure rest is as long as the others make its measure.
  static Fraction LengthOf(const std::vector<EXENTRY>& entries, const std::map<int, const Item*>& heads) {
    Fraction length;
    for (const EXENTRY& entry : entries) {
      const bool rest = (entry.flags & kEntryIsNote) == 0;
      if (rest && entry.duration == kWholeRestDuration && entries.size() == 1) return {};
      const auto at = heads.find(int{entry.number});
      const int before = at == heads.end() ? 0 : at->second->entry.duration;
      const bool scaled = before != 0 && (before == entry.duration || !rest);
      length =
          length + (scaled ? at->second->length * Fraction{entry.duration, before} : Fraction{entry.duration, 1024});
    }
    return length;
  }

  // Where a rest stands, in one form: with kEntryRestPlaced at the step of its record, or wherever readers put it. What
  // did not change is as the score has it.
  static void SettleRest(PlannedEntry& planned, int middle_line) {
    EXENTRY& rest = planned.entry;
    const EXENTRY& before = planned.from.entry;
    if ((rest.flags & kEntryIsNote) != 0) return;
    const short place = PlaceOfRest(rest);
    const bool was_rest = (before.flags & kEntryIsNote) == 0;
    const bool moved = was_rest && place != PlaceOfRest(before);
    const bool same = was_rest && !moved && ((rest.flags ^ before.flags) & kEntryRestPlaced) == 0;
    bool placed = moved || (rest.flags & kEntryRestPlaced) != 0;
    if (planned.whole && place == middle_line) placed = false;
    if (same) placed = planned.from.placed;
    rest.flags = placed ? rest.flags | kEntryRestPlaced : rest.flags & ~kEntryRestPlaced;
  }

  // The voices of the layer, each with the entries that are now its own: those that it had, and what follows them.
  void Plan(const MeasurePatch& patch, const Change& change, std::vector<VoicePlan>& plans) {
    const std::vector<EXENTRY> after = EntriesOf(change);
    const std::size_t first = plans.size();
    const int staff = model_.StaffOf(change.slot);
    VoicePlan plan;
    plan.change = &change;
    plan.home = staff;
    plan.staff = model_.PartOf(change.slot).staves > 1 ? staff : 0;
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceMeasure& voice) {
      plan.voice = owner.name;
      plan.key_staff = owner.key_staff;
      plan.before = EntryRange::Of(voice);
      plans.push_back(plan);
    });
    if (plans.size() == first) {
      plan.voice = VoiceForLayer(change);
      plan.key_staff = plan.voice.empty() ? staff : 0;
      voices_given_.insert(plan.voice);
      plans.push_back(plan);
    }
    std::size_t at = first;
    plans[first].entries.reserve(after.size());
    for (const EXENTRY& entry : after) {
      PlannedEntry planned = PlanEntry(patch, change, entry, after.size() == 1);
      for (std::size_t i = first; i < plans.size(); ++i) {
        if (plans[i].before.Holds(planned.source)) at = i;
      }
      plans[at].entries.push_back(std::move(planned));
    }
    for (std::size_t i = first; i < plans.size(); ++i) {
      VoiceChange& named = NameVoice(plans[i].voice, plans[i].key_staff);
      named.was = plans[i].before.first != 0;
      named.is = !plans[i].entries.empty();
      named.home = staff;
      for (const PlannedEntry& planned : plans[i].entries) named.entries.push_back(planned.entry);
    }
  }

  void Clear(MeasurePatch& patch, const Change& change, std::vector<EntryRange>& gone) {
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceMeasure& voice) {
      if (model_.IsLeftOut(voice, change.measure)) return;
      if (options_.keep_fermatas) patch.MoveFermatas(EntryRange::Of(voice));
      gone.push_back(EntryRange::Of(voice));
      NameVoice(owner.name, owner.key_staff).was = true;
    });
  }

  void Fill(MeasurePatch& patch, const Change& change) {
    EntriesOf(change);
    if (ShowHidden(patch, change)) return;
    const Part& part = model_.PartOf(change.slot);
    const int staff = model_.StaffOf(change.slot);
    NewRest rest;
    rest.staff = part.staves > 1 ? staff : 0;
    rest.length = model_.lengths[static_cast<std::size_t>(change.measure - 1)];
    model_.ForEachVoice(change.slot, change.measure, change.layer,
                        [&](const Voice&, const VoiceMeasure&) { rest.own_voice = true; });
    rest.voice = VoiceFor(change);
    voices_given_.insert(rest.voice);
    patch.Insert(rest);
    NameVoice(rest.voice, rest.voice.empty() ? staff : 0).is = true;
  }

  // A rest that was not printed, and counted as nothing, is printed again in place of a second one beside it.
  bool ShowHidden(MeasurePatch& patch, const Change& change) {
    bool shown = false;
    for (short layer = 0; layer < kLayers && !shown; ++layer) {
      model_.ForEachVoice(change.slot, change.measure, layer, [&](const Voice& owner, const VoiceMeasure& voice) {
        if (shown || !model_.IsLeftOut(voice, change.measure)) return;
        patch.Show(EntryRange::Of(voice));
        VoiceChange& named = NameVoice(owner.name, owner.key_staff);
        named.was = named.is = shown = true;
      });
    }
    return shown;
  }

  bool IsUsed(const PartMeasure& cell, const Part& part, const Voice& voice) const {
    const auto first = part.cells.begin() + cell.first_voice;
    return (!voice.name.empty() && voices_given_.contains(voice.name)) ||
           std::any_of(first, first + cell.voice_count,
                       [&](const VoiceMeasure& each) { return &part.voices[each.voice] == &voice; });
  }

  // A voice for a new rest that has nothing in this measure of the part: the one that the staff's layer 0 has, else
  // another of the staff's, else a new one. Of those that appear later on, the first alone: any other one, or a new
  // one, would come before it and take its layer.
  std::string VoiceFor(const Change& change) {
    const Part& part = model_.PartOf(change.slot);
    const PartMeasure& cell = PartMeasureOf(change);
    const Voice* first = model_.FirstVoice(change.slot);
    if (first == nullptr) return Remembered(new_voices_, change.slot);
    const bool itself = first->key_staff == 0 || first->key_staff == model_.StaffOf(change.slot);
    if (itself && !IsUsed(cell, part, *first)) return first->name;
    for (const Voice* voice : OthersOf(change.slot)) {
      if (!voice->name.empty() && !IsUsed(cell, part, *voice)) return voice->name;
      if (voice->HomeOn(model_.StaffOf(change.slot))->first_measure >= change.measure) break;
    }
    return Remembered(extra_voices_, change.slot);
  }

  // A voice for entries that come to a layer without any.
  std::string VoiceForLayer(const Change& change) {
    if (change.layer == 0) return VoiceFor(change);
    const Part& part = model_.PartOf(change.slot);
    const PartMeasure& cell = PartMeasureOf(change);
    for (const Voice& voice : part.voices) {
      const VoiceHome* home = voice.HomeOn(model_.StaffOf(change.slot));
      const bool its = home != nullptr && home->layer == change.layer && !home->surplus && !voice.name.empty();
      if (its && !IsUsed(cell, part, voice)) return voice.name;
    }
    return Remembered(layer_voices_[change.layer], change.slot);
  }

  // The voices of a staff's other layers, by layer.
  std::vector<const Voice*> OthersOf(short slot) const {
    const int staff = model_.StaffOf(slot);
    std::vector<const Voice*> voices;
    for (const Voice& voice : model_.PartOf(slot).voices) {
      const VoiceHome* home = voice.HomeOn(staff);
      if (home != nullptr && home->layer > 0 && !home->surplus) voices.push_back(&voice);
    }
    std::sort(voices.begin(), voices.end(),
              [&](const Voice* a, const Voice* b) { return a->HomeOn(staff)->layer < b->HomeOn(staff)->layer; });
    return voices;
  }

  const std::string& Remembered(std::map<short, std::string>& voices, short slot) {
    const auto known = voices.find(slot);
    return known != voices.end() ? known->second : voices[slot] = NewVoice(slot);
  }

  // The first number of the staff's block that is free.
  std::string NewVoice(short slot) {
    const Part& part = model_.PartOf(slot);
    std::set<std::string>& taken = taken_[model_.StaffAt(slot).part];
    const auto is_free = [&](const std::string& name) {
      return !taken.contains(name) && std::none_of(part.voices.begin(), part.voices.end(),
                                                   [&](const Voice& voice) { return voice.name == name; });
    };
    int number = (model_.StaffOf(slot) - 1) * 4 + 1;
    const int block_end = number + 4;
    while (number < block_end && !is_free(std::to_string(number))) ++number;
    if (number == block_end) {
      number = part.staves * 4 + 1;
      while (!is_free(std::to_string(number))) ++number;
    }
    return *taken.insert(std::to_string(number)).first;
  }

  FramePlans plans_;
  ModelFrames frames_;
  const Model& model_;
  const Document& document_;
  std::string_view text_;
  const WriteOptions& options_;
  Guard guard_;
  NoteStyle style_;
  std::vector<VoiceChange> voices_;          // named in the measure at hand
  std::set<std::string> voices_given_;       // to its new rests
  std::map<short, std::string> new_voices_;  // by slot
  std::map<short, std::string> extra_voices_;
  std::map<short, std::map<short, std::string>> layer_voices_;  // by layer
  std::map<std::string, std::string> refusals_;                 // by reason: the places
  int refused_ = 0;
  std::size_t refused_at_ = 0;
  std::map<int, std::set<std::string>> taken_;  // by part: names given to new voices
};

}  // namespace

std::vector<std::string> AttachedTo(const Model& model, const Document& document, std::string_view text,
                                    const Change& change) {
  std::vector<std::string> names;
  std::vector<EntryRange> gone;
  model.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice&, const VoiceMeasure& voice) {
    if (model.IsLeftOut(voice, change.measure)) return;
    const EntryRange range = EntryRange::Of(voice);
    for (int number = range.first; number < range.end; ++number) {
      if (!document.FindEntry(number)) gone.push_back({number, number + 1});
    }
  });
  if (gone.empty()) return names;
  const NoteStyle style;
  const MeasurePatch patch(model, text, model.StaffAt(change.slot).part, change.measure, style);
  for (const EntryRange& entry : gone) {
    for (std::string& name : patch.Attached(entry)) {
      if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(std::move(name));
    }
  }
  return names;
}

std::string PatchText(const Model& model, const Document& document, std::string_view text,
                      const std::vector<Change>& changes, const WriteOptions& options) {
  return Writer(model, document, text, changes, options).Write(changes);
}

}  // namespace sok
