#include "host/musicxml/writer.h"

#include <algorithm>
#include <map>
#include <set>

#include "host/musicxml/cell_edit.h"
#include "host/musicxml/reader.h"

namespace sok {
namespace {

class Writer {
 public:
  Writer(const Model& model, std::string_view text, const WriteOptions& options, std::vector<VoiceChange>& voices)
      : model_(model), text_(text), options_(options), voices_(voices), style_(NoteStyle::Of(text, model.first_note)) {}

  // All changes of one measure of one part.
  void Apply(std::vector<const Change*> changes) {
    const Cell& cell = CellOf(*changes.front());
    CellEdit edit(text_, cell.offset, cell.divisions, style_);
    // What stands later in the text goes first: groups that were put in one after the other come out in reverse.
    std::stable_sort(changes.begin(), changes.end(), [&](const Change* a, const Change* b) { return OffsetOf(*a) > OffsetOf(*b); });
    for (const Change* change : changes) {
      if (change->kind == ChangeKind::kCleared) Clear(edit, *change);
    }
    std::stable_sort(changes.begin(), changes.end(), [](const Change* a, const Change* b) { return a->slot < b->slot; });
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
    return "staff " + std::to_string(change.slot) + ", measure " + std::to_string(change.measure) + ", layer " +
           std::to_string(change.layer + 1);
  }

  std::string Result() {
    std::stable_sort(splices_.begin(), splices_.end(), [](const Splice& a, const Splice& b) { return a.begin < b.begin; });
    std::size_t size = text_.size();
    for (const Splice& splice : splices_) size += splice.replacement.size();
    std::string result;
    result.reserve(size);
    std::size_t from = 0;
    for (const Splice& splice : splices_) {
      result.append(text_, from, splice.begin - from).append(splice.replacement);
      from = splice.end;
    }
    return result.append(text_, from);
  }

 private:
  std::size_t OffsetOf(const Change& change) const {
    std::size_t offset = 0;
    model_.ForEachVoice(change.slot, change.measure, change.layer,
                        [&](const Voice&, const VoiceCell& voice) { offset = std::max(offset, voice.offset); });
    return offset;
  }

  void Clear(CellEdit& edit, const Change& change) {
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceCell& voice) {
      if (model_.IsLeftOut(voice, change.measure)) return;
      const auto selects = [&](const std::string& name, int staff) {
        return name == owner.name && (owner.key_staff == 0 || owner.key_staff == staff);
      };
      if (options_.keep_fermatas) edit.MoveFermatas(selects);
      edit.Remove(selects);
      voices_.push_back({model_.StaffAt(change.slot).part, change.measure, owner.name, owner.key_staff, false});
    });
  }

  void Fill(CellEdit& edit, const Change& change) {
    const Part& part = model_.PartOf(change.slot);
    const int staff = model_.StaffOf(change.slot);
    NewRest rest;
    rest.staff = part.staves > 1 ? staff : 0;
    rest.length = model_.lengths[static_cast<std::size_t>(change.measure - 1)];
    // Also beside a rest that only counts as nothing: one voice would join the two.
    model_.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice&, const VoiceCell&) { rest.own_voice = true; });
    rest.voice = rest.own_voice ? FreeVoice(change) : VoiceFor(change.slot);
    edit.Insert(rest);
    const bool by_staff = rest.voice.empty() || model_.options.cross_staff_drawn;
    voices_.push_back({model_.StaffAt(change.slot).part, change.measure, rest.voice, by_staff ? staff : 0, true});
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
      return !taken.contains(name) &&
             std::none_of(part.voices.begin(), part.voices.end(), [&](const Voice& voice) { return voice.name == name; });
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

  // A voice for a rest in front of music of its own layer: another layer's that has nothing here, else a new one.
  std::string FreeVoice(const Change& change) {
    const int staff = model_.StaffOf(change.slot);
    for (const Voice& voice : model_.PartOf(change.slot).voices) {
      if (voice.home != staff || voice.layer == change.layer || voice.surplus || voice.name.empty()) continue;
      bool busy = false;
      model_.ForEachVoice(change.slot, change.measure, voice.layer, [&](const Voice&, const VoiceCell&) { busy = true; });
      if (!busy) return voice.name;
    }
    const auto known = extra_voices_.find(change.slot);
    return known != extra_voices_.end() ? known->second : extra_voices_[change.slot] = NewVoice(change.slot);
  }

  const Model& model_;
  std::string_view text_;
  const WriteOptions& options_;
  std::vector<VoiceChange>& voices_;
  NoteStyle style_;
  std::vector<Splice> splices_;
  std::map<short, std::string> new_voices_;    // by slot
  std::map<short, std::string> extra_voices_;
  std::map<int, std::set<std::string>> taken_;  // by part: names given to new voices
};

// One voice of one measure, as two readings are compared by it.
struct Trace {
  std::string_view voice;
  int staff;
  std::uint64_t fingerprint;
  auto operator<=>(const Trace&) const = default;
};

std::vector<Trace> TracesOf(const Part& part, const Cell& cell) {
  std::vector<Trace> traces;
  for (std::uint32_t i = 0; i < cell.voices; ++i) {
    const VoiceCell& voice = part.cells[cell.first_voice + i];
    const Voice& owner = part.voices[voice.voice];
    traces.push_back({owner.name, owner.key_staff, voice.fingerprint});
  }
  std::sort(traces.begin(), traces.end());
  return traces;
}

// Takes the voices that were to go out of `before` and those that were to come out of `after`; false when one of them
// is not as it should be.
bool TakeNamed(const VoiceChange& change, const Part& part, const Cell& cell, std::vector<Trace>& before, std::vector<Trace>& after) {
  std::vector<Trace>& in = change.comes ? after : before;
  const auto at = std::find_if(in.begin(), in.end(), [&](const Trace& trace) {
    return trace.voice == change.voice && trace.staff == change.staff;
  });
  if (at == in.end()) return false;
  in.erase(at);
  if (!change.comes) return true;
  for (std::uint32_t i = 0; i < cell.voices; ++i) {
    const VoiceCell& voice = part.cells[cell.first_voice + i];
    if (part.voices[voice.voice].name == change.voice && part.voices[voice.voice].key_staff == change.staff) {
      return voice.entries >= 1;
    }
  }
  return false;
}

}  // namespace

std::vector<std::string> AttachedTo(const Model& model, std::string_view text, const Change& change) {
  std::vector<std::string> names;
  const Cell* cell = model.CellOf(change.slot, change.measure);
  if (cell == nullptr) return names;
  const NoteStyle style;
  const CellEdit edit(text, cell->offset, cell->divisions, style);
  model.ForEachVoice(change.slot, change.measure, change.layer, [&](const Voice& owner, const VoiceCell& voice) {
    if (model.IsLeftOut(voice, change.measure)) return;
    for (std::string& name : edit.Attached([&](const std::string& voice_name, int staff) {
           return voice_name == owner.name && (owner.key_staff == 0 || owner.key_staff == staff);
         })) {
      names.push_back(std::move(name));
    }
  });
  return names;
}

std::string PatchText(const Model& model, std::string_view text, const std::vector<Change>& changes,
                      const WriteOptions& options, std::vector<VoiceChange>& voices) {
  Writer writer(model, text, options, voices);
  std::map<std::size_t, std::vector<const Change*>> by_cell;
  for (const Change& change : changes) {
    const Cell& cell = writer.CellOf(change);
    if (change.kind == ChangeKind::kOther) {
      throw WriteError(cell.offset, writer.Place(change) +
                                        ": its entries were changed in a way that cannot be written; only whole-measure rests "
                                        "that come and layers that are emptied can");
    }
    by_cell[cell.offset].push_back(&change);
  }
  for (auto& [offset, cell_changes] : by_cell) writer.Apply(std::move(cell_changes));
  return writer.Result();
}

void CheckPatchedText(const Model& model, std::string_view patched, const std::vector<VoiceChange>& voices) {
  Model again;
  try {
    again = ReadModel(patched, model.options);
  } catch (const TextError& error) {
    throw WriteError(0, std::string("the result cannot be read again (") + error.what() + "); nothing is written");
  }
  std::map<std::pair<int, short>, std::vector<const VoiceChange*>> by_cell;
  for (const VoiceChange& change : voices) by_cell[{change.part, change.measure}].push_back(&change);
  bool same = again.parts.size() == model.parts.size();
  for (std::size_t p = 0; same && p < model.parts.size(); ++p) {
    const Part& was = model.parts[p];
    const Part& is = again.parts[p];
    same = was.measures.size() == is.measures.size() && was.staves == is.staves && was.id == is.id;
    for (std::size_t m = 0; same && m < was.measures.size(); ++m) {
      std::vector<Trace> before = TracesOf(was, was.measures[m]);
      std::vector<Trace> after = TracesOf(is, is.measures[m]);
      const auto named = by_cell.find({static_cast<int>(p), static_cast<short>(m + 1)});
      if (named != by_cell.end()) {
        for (const VoiceChange* change : named->second) {
          same = same && TakeNamed(*change, is, is.measures[m], before, after);
        }
      }
      same = same && before == after && was.measures[m].fingerprint == is.measures[m].fingerprint;
      if (!same) {
        throw WriteError(was.measures[m].offset, "measure " + std::to_string(m + 1) + " of part " + was.id +
                                                     " would come out changed beyond what was asked for; nothing is written");
      }
    }
  }
  if (!same) throw WriteError(0, "the result would have other parts or measures; nothing is written");
}

}  // namespace sok
