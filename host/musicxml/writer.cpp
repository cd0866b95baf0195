#include "host/musicxml/writer.h"

#include <algorithm>
#include <map>
#include <set>

#include "host/musicxml/articulations.h"
#include "host/musicxml/cell_edit.h"
#include "host/musicxml/frames.h"

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
  void Apply(std::vector<const Change*> changes) {
    const Cell& cell = CellOf(*changes.front());
    CellEdit edit(text_, cell.offset, cell.divisions, style_);
    // What stands later in the text goes first: groups that were put in one after the other come out in reverse.
    std::stable_sort(changes.begin(), changes.end(),
                     [&](const Change* a, const Change* b) { return OffsetOf(*a) > OffsetOf(*b); });
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kOther) Articulate(edit, *change);
    }
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kCleared) Clear(edit, *change);
    }
    std::stable_sort(changes.begin(), changes.end(),
                     [](const Change* a, const Change* b) { return a->slot < b->slot; });
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kFilled) Fill(edit, *change);
    }
    for (Splice& splice : edit.Splices()) splices_.push_back(std::move(splice));
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
  std::size_t OffsetOf(const Change& change) const {
    std::size_t offset = 0;
    model_.ForEachVoice(change.slot, change.measure, change.layer,
                        [&](const Voice&, const VoiceCell& voice) { offset = std::max(offset, voice.offset); });
    return offset;
  }

  static CellEdit::Selector SelectorOf(const Voice& owner) {
    return [&owner](const std::string& name, int staff) {
      return name == owner.name && (owner.key_staff == 0 || owner.key_staff == staff);
    };
  }

  void Articulate(CellEdit& edit, const Change& change) {
    const FramePlace place{change.slot, change.measure, change.layer};
    const ModelFrames frames(model_);
    std::vector<EXENTRY> before(static_cast<std::size_t>(frames.Count(place)));
    if (!before.empty()) frames.Fill(place, before.data());
    const auto added = FindArticulations(document_, std::move(before), document_.Entries(place));
    if (!added) {
      throw WriteError(CellOf(change).offset,
                       Place(change) +
                           ": its entries were changed in a way that cannot be written; only whole-measure rests "
                           "that come, layers that are emptied and common articulations can");
    }
    std::size_t first = 0;  // of the voice's entries in the frame
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceCell& voice) {
      if (model_.IsLeftOut(voice, change.measure)) return;
      for (const AddedArticulations& signs : *added) {
        if (signs.entry < first || signs.entry - first >= voice.entries) continue;
        edit.Articulate(SelectorOf(owner), signs.entry - first, signs.elements);
      }
      first += voice.entries;
    });
    voices_.push_back({model_.StaffAt(change.slot).part, change.measure, {}, 0, VoiceChange::kMarked});
  }

  void Clear(CellEdit& edit, const Change& change) {
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceCell& voice) {
      if (model_.IsLeftOut(voice, change.measure)) return;
      const CellEdit::Selector selects = SelectorOf(owner);
      if (options_.keep_fermatas) edit.MoveFermatas(selects);
      edit.Remove(selects);
      voices_.push_back(
          {model_.StaffAt(change.slot).part, change.measure, owner.name, owner.key_staff, VoiceChange::kGoes});
    });
  }

  void Fill(CellEdit& edit, const Change& change) {
    const Part& part = model_.PartOf(change.slot);
    const int staff = model_.StaffOf(change.slot);
    NewRest rest;
    rest.staff = part.staves > 1 ? staff : 0;
    rest.length = model_.lengths[static_cast<std::size_t>(change.measure - 1)];
    // Also beside a rest that only counts as nothing: one voice would join the two.
    model_.ForEachVoice(change.slot, change.measure, change.layer,
                        [&](const Voice&, const VoiceCell&) { rest.own_voice = true; });
    rest.voice = rest.own_voice ? FreeVoice(change) : VoiceFor(change.slot);
    edit.Insert(rest);
    const bool by_staff = rest.voice.empty() || model_.options.cross_staff_drawn;
    voices_.push_back(
        {model_.StaffAt(change.slot).part, change.measure, rest.voice, by_staff ? staff : 0, VoiceChange::kComes});
  }

  // The voice of the staff's layer 0; a staff without any gets the first number of its block that is free.
  std::string VoiceFor(short slot) {
    if (const Voice* voice = model_.FirstVoice(slot)) return voice->name;
    const auto known = new_voices_.find(slot);
    return known != new_voices_.end() ? known->second : new_voices_[slot] = NewVoice(slot);
  }

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

  // A voice for a rest in front of music of its own layer: another layer's that has nothing here, else a new one. Of
  // those that appear later on, the first alone: any other one, or a new one, would come before it and take its layer.
  std::string FreeVoice(const Change& change) {
    const int staff = model_.StaffOf(change.slot);
    for (const Voice& voice : model_.PartOf(change.slot).voices) {
      if (voice.home != staff || voice.layer == change.layer || voice.surplus) continue;
      if (voice.first_measure >= change.measure) return voice.name;
      bool busy = voice.name.empty();
      model_.ForEachVoice(change.slot, change.measure, voice.layer,
                          [&](const Voice&, const VoiceCell&) { busy = true; });
      if (!busy) return voice.name;
    }
    const auto known = extra_voices_.find(change.slot);
    return known != extra_voices_.end() ? known->second : extra_voices_[change.slot] = NewVoice(change.slot);
  }

  const Model& model_;
  const Document& document_;
  std::string_view text_;
  const WriteOptions& options_;
  std::vector<VoiceChange>& voices_;
  NoteStyle style_;
  std::vector<Splice> splices_;
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
  const CellEdit edit(text, cell->offset, cell->divisions, style);
  model.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceCell& voice) {
    if (model.IsLeftOut(voice, change.measure)) return;
    for (std::string& name : edit.Attached([&](const std::string&voice_name, int staff) {
           return voice_name == owner.name && (owner.key_staff == 0 || owner.key_staff == staff);
         })) {
      names.push_back(std::move(name));
    }
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
  for (auto& [offset, cell_changes] : by_cell) writer.Apply(std::move(cell_changes));
  return writer.Result();
}

}  // namespace sok
