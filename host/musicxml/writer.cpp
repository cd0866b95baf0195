#include "host/musicxml/writer.h"

#include <algorithm>
#include <map>
#include <set>

#include "host/musicxml/articulations.h"
#include "host/musicxml/frames.h"
#include "host/musicxml/measure_patch.h"

namespace sok {
namespace {

class Writer {
 public:
  Writer(const Model& model, const Document& document, std::string_view text, const WriteOptions& options,
         std::vector<VoiceChange>& voices)
      : model_(model),
        document_(document),
        text_(text),
        options_(options),
        voices_(voices),
        style_(NoteStyle::Of(text, model.first_note)) {}

  // All changes of one measure of one part.
  void Apply(const std::vector<const Change*>& changes) {
    const Change& first = *changes.front();
    MeasurePatch patch(model_, text_, model_.StaffAt(first.slot).part, first.measure, style_);
    std::vector<EntryRange> gone;
    voices_given_.clear();
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kOther) Articulate(patch, *change);
      if (change->kind == ChangeKind::kCleared) Clear(patch, *change, gone);
    }
    patch.Remove(gone);
    for (const Change* change : changes) {  // by slot
      if (change->kind == ChangeKind::kFilled) Fill(patch, *change);
    }
    for (Splice& splice : patch.Splices()) splices_.push_back(std::move(splice));
  }

  const Cell& CellOf(const Change& change) const {
    const Cell* cell = model_.CellOf(change.slot, change.measure);
    if (cell == nullptr) {
      throw WriteError(0, Place(change) + ": the part has no such measure");
    }
    return *cell;
  }

  std::string Place(const Change& change) const {
    return "staff " + std::to_string(change.slot) + ", " +
           MeasureLabel(model_.measures, static_cast<std::size_t>(change.measure)) + ", layer " +
           std::to_string(change.layer + 1);
  }

  std::string Result() {
    std::stable_sort(splices_.begin(), splices_.end(),
                     [](const Splice& a, const Splice& b) { return a.begin < b.begin; });
    std::size_t size = text_.size();
    for (const Splice& splice : splices_) size += splice.replacement.size();
    std::string result;
    result.reserve(size);
    std::size_t from = 0;
    for (const Splice& splice : splices_) {
      result.append(text_, from, splice.begin - from).append(splice.replacement);
      from = splice.end;
    }
    result.append(text_, from);
    return result;
  }

 private:
  VoiceChange& NameVoice(const Change& change, const std::string& voice, int staff) {
    return voices_.emplace_back(VoiceChange{model_.StaffAt(change.slot).part, change.measure, voice, staff, {}, {}});
  }

  void Articulate(MeasurePatch& patch, const Change& change) {
    const FramePlace place{change.slot, change.measure, change.layer};
    const ModelFrames frames(model_);
    std::vector<EXENTRY> before(static_cast<std::size_t>(frames.Count(place)));
    if (!before.empty()) frames.Fill(place, before.data());
    const std::vector<EXENTRY> after = document_.Entries(place);
    const auto added = FindArticulations(document_, std::move(before), after);
    if (!added) {
      throw WriteError(CellOf(change).offset,
                       Place(change) +
                           ": its entries were changed in a way that cannot be written; only whole-measure rests "
                           "that come, layers that are emptied and common articulations can");
    }
    for (const AddedArticulations& signs : *added) patch.Articulate(after[signs.entry].number, signs.elements);
    NameVoice(change, {}, 0);
  }

  void Clear(MeasurePatch& patch, const Change& change, std::vector<EntryRange>& gone) {
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceCell& voice) {
      if (model_.IsLeftOut(voice, change.measure)) return;
      if (options_.keep_fermatas) patch.MoveFermatas(EntryRange::Of(voice));
      gone.push_back(EntryRange::Of(voice));
      NameVoice(change, owner.name, owner.key_staff).was = true;
    });
  }

  void Fill(MeasurePatch& patch, const Change& change) {
    if (ShowHidden(patch, change)) return;
    const Part& part = model_.PartOf(change.slot);
    const int staff = model_.StaffOf(change.slot);
    NewRest rest;
    rest.staff = part.staves > 1 ? staff : 0;
    rest.length = model_.lengths[static_cast<std::size_t>(change.measure - 1)];
    model_.ForEachVoice(change.slot, change.measure, change.layer,
                        [&](const Voice&, const VoiceCell&) { rest.own_voice = true; });
    rest.voice = VoiceFor(change);
    voices_given_.insert(rest.voice);
    patch.Insert(rest);
    NameVoice(change, rest.voice, rest.voice.empty() ? staff : 0).is = true;
  }

  // A rest that was not printed, and counted as nothing, is printed again in place of a second one beside it.
  bool ShowHidden(MeasurePatch& patch, const Change& change) {
    bool shown = false;
    for (short layer = 0; layer < kLayers && !shown; ++layer) {
      model_.ForEachVoice(change.slot, change.measure, layer, [&](const Voice& owner, const VoiceCell& voice) {
        if (shown || !model_.IsLeftOut(voice, change.measure)) return;
        patch.Show(EntryRange::Of(voice));
        VoiceChange& named = NameVoice(change, owner.name, owner.key_staff);
        named.was = named.is = shown = true;
      });
    }
    return shown;
  }

  bool IsUsed(const Cell& cell, const Part& part, const Voice& voice) const {
    const auto first = part.cells.begin() + cell.first_voice;
    return (!voice.name.empty() && voices_given_.contains(voice.name)) ||
           std::any_of(first, first + cell.voices,
                       [&](const VoiceCell& each) { return &part.voices[each.voice] == &voice; });
  }

  // A voice for a new rest that has nothing in this measure of the part: the one that the staff's layer 0 has, else
  // another of the staff's, else a new one. Of those that appear later on, the first alone: any other one, or a new
  // one, would come before it and take its layer.
  std::string VoiceFor(const Change& change) {
    const Part& part = model_.PartOf(change.slot);
    const Cell& cell = CellOf(change);
    const Voice* first = model_.FirstVoice(change.slot);
    if (first == nullptr) return Remembered(new_voices_, change.slot);
    if (!IsUsed(cell, part, *first)) return first->name;
    for (const Voice* voice : OthersOf(change.slot)) {
      if (!voice->name.empty() && !IsUsed(cell, part, *voice)) return voice->name;
      if (voice->HomeOn(model_.StaffOf(change.slot))->first_measure >= change.measure) break;
    }
    return Remembered(extra_voices_, change.slot);
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

  const Model& model_;
  const Document& document_;
  std::string_view text_;
  const WriteOptions& options_;
  std::vector<VoiceChange>& voices_;
  NoteStyle style_;
  std::vector<Splice> splices_;
  std::set<std::string> voices_given_;       // to new rests of the measure at hand
  std::map<short, std::string> new_voices_;  // by slot
  std::map<short, std::string> extra_voices_;
  std::map<int, std::set<std::string>> taken_;  // by part: names given to new voices
};

}  // namespace

std::vector<std::string> AttachedTo(const Model& model, std::string_view text, const Change& change) {
  std::vector<std::string> names;
  const Cell* cell = model.CellOf(change.slot, change.measure);
  if (cell == nullptr) return names;
  const NoteStyle style;
  const MeasurePatch patch(model, text, model.StaffAt(change.slot).part, change.measure, style);
  model.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice&, const VoiceCell& voice) {
    if (model.IsLeftOut(voice, change.measure)) return;
    for (std::string& name : patch.Attached(EntryRange::Of(voice))) names.push_back(std::move(name));
  });
  return names;
}

std::string PatchText(const Model& model, const Document& document, std::string_view text,
                      const std::vector<Change>& changes, const WriteOptions& options,
                      std::vector<VoiceChange>& voices) {
  Writer writer(model, document, text, options, voices);
  std::map<std::size_t, std::vector<const Change*>> by_cell;
  for (const Change& change : changes) {
    const Cell& cell = writer.CellOf(change);
    by_cell[cell.offset].push_back(&change);
  }
  for (const auto& [offset, cell_changes] : by_cell) writer.Apply(cell_changes);
  return writer.Result();
}

}  // namespace sok
