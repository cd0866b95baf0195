#include "host/runner/validate/validate_watch.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "host/musicxml/writing/note_text.h"
#include "host/runner/report/text.h"
#include "host/runner/run/host_functions.h"

namespace sok {
namespace {

// What a call answers decides how its answer may vary.
enum class AnswerKind { kNothing, kPointer, kNumber };

template <typename Result>
constexpr AnswerKind KindOf() {
  if (std::is_void_v<Result>) return AnswerKind::kNothing;
  if (std::is_pointer_v<Result>) return AnswerKind::kPointer;
  return AnswerKind::kNumber;
}

const std::unordered_map<std::string_view, AnswerKind>& AnswerKinds() {
  static const std::unordered_map<std::string_view, AnswerKind> kinds = {
#define SX_ENTRY(result, name, parameters, arguments, fallback) {#name, KindOf<result>()},
#define SX_CUSTOM(result, name, parameters, arguments) {#name, KindOf<result>()},
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
  };
  return kinds;
}

bool StartsEdit(std::string_view name) { return name.starts_with("SX_StartSonkelEdit"); }
bool EndsEdit(std::string_view name) { return name == "SX_EndSonkelEdit" || name == "SX_CancelSonkelEdit"; }
bool LoadsRecord(std::string_view name) { return name == "SX_LoadEData"; }

bool ChangesFrame(std::string_view name) {
  return name == "SX_InsertEXENTRY" || name == "SX_DeleteEXENTRY" || name == "SX_ReduceEntries";
}
bool ChangesDocument(std::string_view name) {
  return name == "SX_SaveTGF" || name == "SX_SaveEData" || name == "SX_CreateEData" || name == "SX_DeleteEData";
}

// Calls whose answer says whether they were done: other answers would be lies about the extension's own memory.
bool AnswersSuccess(std::string_view name) {
  return name.ends_with("EData") || name.ends_with("EXENTRY") || name.ends_with("TGF") || name.ends_with("Edit") ||
         StartsEdit(name);
}

FramePlace PlaceOf(const EXTGF2005a& frame) {
  return {static_cast<short>(frame.key[0]), static_cast<short>(frame.key[1]), static_cast<short>(frame.key[2])};
}

// A call with its arguments, where they stand in the music in words: "SX_FreeTGF of staff 1, measure 2, layer 0".
std::string CallText(const HostCall& call) {
  constexpr std::string_view kLoad[] = {"staff list ", "slot ", "measure ", "layer "};
  constexpr std::string_view kOthers[] = {"staff ", "measure ", "layer "};
  const std::string_view name = call.name, arguments = call.arguments;
  if (!name.ends_with("TGF") && !ChangesFrame(name)) return std::string(name) + "(" + call.arguments + ")";
  const bool loads = name == "SX_LoadTGF";
  const std::span<const std::string_view> words = loads ? std::span(kLoad) : std::span<const std::string_view>(kOthers);
  const std::string_view place = loads ? arguments : arguments.substr(0, arguments.find(' '));
  const std::vector<std::string_view> numbers = Split(place, loads ? ' ' : ',');
  std::string text(name);
  for (std::size_t i = 0; i < std::min(words.size(), numbers.size()); ++i) {
    text.append(i == 0 ? " of " : ", ").append(numbers.size() >= words.size() ? words[i] : "").append(numbers[i]);
  }
  return text;
}

std::string Hexadecimal(unsigned int number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", number);
  return text;
}

// What no score has room for, of the notes of an entry; empty when there is nothing.
std::string PitchFault(const EXENTRY& entry) {
  if ((entry.flags & kEntryIsNote) == 0) return {};
  for (const EXNOTE& note : std::span(entry.notes, static_cast<std::size_t>(entry.noteCount))) {
    if (note.first < kLowestStep || note.first > kHighestStep) {
      return "has a pitch " + std::to_string(note.first) + " steps from middle C; the octaves 0 to 9 are " +
             std::to_string(kLowestStep) + " to " + std::to_string(kHighestStep);
    }
    if (std::abs(int{note.second}) > kMostAlteration) {
      return "has a note altered by " + std::to_string(note.second) + " semitones; the most is " +
             std::to_string(kMostAlteration);
    }
  }
  return {};
}

// What cannot stand in a score, of the entry at an index; empty when it can. One that lasted 0 may go on doing so.
std::string EntryFault(std::span<const EXENTRY> entries, std::size_t index, const Document& before, int last_number) {
  const EXENTRY& entry = entries[index];
  const int number = entry.number;
  const auto is_same = [number](const EXENTRY& other) { return other.number == number; };
  const auto known = before.FindEntry(number);
  const auto lasted_nothing = [&] {
    return known && before.Entries(known->place)[static_cast<std::size_t>(known->index)].duration == 0;
  };
  if (entry.noteCount < 0 || entry.noteCount > static_cast<short>(std::size(entry.notes))) {
    return "has " + std::to_string(entry.noteCount) + " notes; 0 to " + std::to_string(std::size(entry.notes)) +
           " have room";
  }
  if (number <= 0) return "has the number " + std::to_string(number) + "; SX_InsertEXENTRY hands numbers out, from 1";
  if (std::ranges::find_if(entries.first(index), is_same) != entries.begin() + static_cast<std::ptrdiff_t>(index)) {
    return "has the number " + std::to_string(number) + ", as has one before it; numbers are unique in a score";
  }
  if (number > last_number) return "has the number " + std::to_string(number) + ", which was never handed out";
  if (entry.duration == 0 && !lasted_nothing()) return "lasts 0";
  return PitchFault(entry);
}

}  // namespace

std::string PlaceText(const FramePlace& place) {
  return "staff " + std::to_string(place.instrument) + ", measure " + std::to_string(place.measure) + ", layer " +
         std::to_string(place.layer);
}

HostWatch::HostWatch(const HostFault& fault, const Document& document)
    : fault_(fault), document_(document), random_(fault.seed.value_or(0)) {
  HideHostFunctions({fault.hidden});
}

bool HostWatch::Before(HostCall& call) {
  if (std::this_thread::get_id() != thread_) {
    foreign_call_ = call.name;  // the books belong to the other thread
    return false;
  }
  const auto number = static_cast<long>(calls_.size());
  const std::string_view name = call.name;
  NoteCall(call);
  BeforeFrameCall(call);
  if (name == "SX_SaveTGF" && fault_.None()) CheckSaved(call);
  BeforeEditCall(call);
  capacity_ = call.size != nullptr ? *call.size : 0;
  if (number == fault_.refused_call) return false;
  return !fault_.seed || Random(0, 5) != 0;
}

void HostWatch::BeforeEditCall(const HostCall& call) {
  const std::string_view name = call.name;
  if (StartsEdit(name) && interrupt_edits_) {
    say_(kInterrupts);
    throw InterruptedEdit();
  }
  if (EndsEdit(name)) ++edits_.closed;
  if (name == "SX_EndMassEdit") ++mass_edits_.closed;
}

void HostWatch::NoteCall(const HostCall& call) {
  const std::size_t number = calls_.size();
  calls_.emplace_back(call.name);
  say_("the last host call was number " + std::to_string(number) + ", " + CallText(call));
  trace_ = std::hash<std::string>()(std::to_string(trace_) + call.name + call.arguments);
  if (!HasKnownVersion(call)) {
    Find("calls", "calls " + calls_.back() + " with the interface version " + Hexadecimal(call.version) +
                      " instead of " + Hexadecimal(kInterfaceVersion));
  }
}

void HostWatch::BeforeFrameCall(const HostCall& call) {
  const std::string_view name = call.name;
  const bool frees = name == "SX_FreeTGF";
  if (!frees && !ChangesFrame(name)) return;
  const auto held = frames_.find(call.frame);
  if (held != frames_.end()) {
    if (frees) freed_[call.frame] = held->second.words, frames_.erase(held);
    return;
  }
  const auto freed = freed_.find(call.frame);
  const std::string what = call.frame == nullptr   ? "no frame (a null pointer)"
                           : freed != freed_.end() ? "the frame of " + freed->second + ", which it has freed,"
                                                   : "a frame that the host has not handed out";
  Find("frames", "hands " + what + " to " + call.name);
}

void HostWatch::After(HostCall& call) {
  if (std::this_thread::get_id() != thread_) return;
  if (fault_.seed) Vary(call);
  const std::string_view name = call.name;
  AfterFrameCall(call);
  if (ChangesDocument(name) && call.result != 0) NoteChange(call);
  if (StartsEdit(name)) ++edits_.asked, edits_.opened += call.result != 0;
  if (name == "SX_StartMassEdit") ++mass_edits_.asked, mass_edits_.opened += call.result != 0;
}

void HostWatch::AfterFrameCall(const HostCall& call) {
  const std::string_view name = call.name;
  EXTGF2005a* const frame = call.frame;
  if (frame == nullptr) return;
  if (name == "SX_LoadTGF" && call.result != 0) frames_[frame] = {PlaceText(PlaceOf(*frame)), nullptr, 0};
  const auto held = frames_.find(frame);
  if (held != frames_.end() && (name == "SX_LoadTGF" || ChangesFrame(name))) {
    held->second.entries = frame->entries;
    held->second.count = frame->count;
  }
}

// Before the call, because the host puts numbers right.
void HostWatch::CheckSaved(const HostCall& call) {
  if (call.frame == nullptr) return Find("frames", "hands no frame (a null pointer) to SX_SaveTGF");
  const EXTGF2005a& frame = *call.frame;
  const FramePlace place = PlaceOf(frame);
  const std::string where = "saves the frame of " + PlaceText(place);
  if (const std::string fault = CountFault(frame); !fault.empty()) return Find("entries", where + fault);
  if (!document_.Exists(place)) return Find("entries", where + ", which the score does not have");
  const std::span entries(static_cast<const EXENTRY*>(frame.entries), static_cast<std::size_t>(frame.count));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::string fault = EntryFault(entries, i, before_, document_.LastEntryNumber());
    if (!fault.empty()) return Find("entries", where + ": entry " + std::to_string(i) + " " + fault);
  }
}

std::string HostWatch::CountFault(const EXTGF2005a& frame) const {
  const std::string count = " with a count of " + std::to_string(frame.count);
  const auto held = frames_.find(&frame);
  if (held != frames_.end() && held->second.entries == frame.entries && frame.count > held->second.count) {
    return count + "; its array has " + std::to_string(held->second.count) + " entries";
  }
  const bool sound = frame.count >= 0 && (frame.count == 0 || frame.entries != nullptr);
  return sound ? "" : count + "; that many entries it does not have";
}

void HostWatch::NoteChange(const HostCall& call) {
  ++changes_;
  if (edits_.asked <= edits_.closed && change_outside_.empty()) change_outside_ = CallText(call);
}

void HostWatch::Vary(HostCall& call) {
  const std::string_view name = call.name;
  if (Random(0, 2) != 0) return;
  if (name == "SX_LoadTGF") {
    if (call.result != 0 && call.frame != nullptr) VaryFrame(*call.frame);
  } else if (LoadsRecord(name)) {
    VaryRecord(call);
  } else if (name == "SX_GetMaxLayers") {
    call.result = Random(-1, 8);
  } else {
    VaryAnswer(call);
  }
}

void HostWatch::VaryAnswer(HostCall& call) {
  const std::string_view name = call.name;
  if (AnswersSuccess(name)) {
    if (call.result != 0) call.result = Random(0, 1) == 0 ? -1 : 0x100;
  } else if (AnswerKinds().at(name) == AnswerKind::kPointer) {
    call.result = 0;
  } else if (AnswerKinds().at(name) == AnswerKind::kNumber) {
    call.result = Random(SHRT_MIN, SHRT_MAX);
  }
}

void HostWatch::VaryFrame(EXTGF2005a& frame) {
  for (int i = 0; i < frame.count; ++i) {
    EXENTRY& entry = frame.entries[i];
    entry.duration = static_cast<unsigned short>(Random(0, USHRT_MAX));
    entry.flags ^= static_cast<unsigned int>(Random(INT_MIN, INT_MAX));
    entry.noteCount = static_cast<short>(Random(0, EXENTRY::kMostNotes));
  }
  frame.count = static_cast<short>(Random(Random(0, 3) == 0 ? SHRT_MIN : 0, frame.count));
}

void HostWatch::VaryRecord(HostCall& call) {
  if (call.buffer != nullptr && capacity_ > 0) {
    auto* const bytes = static_cast<unsigned char*>(call.buffer);
    // Texts end in a zero unit, hence the last two bytes.
    std::generate_n(bytes, capacity_, [this] { return static_cast<unsigned char>(Random(0, UCHAR_MAX)); });
    std::fill(bytes + std::max(capacity_ - 2, 0), bytes + capacity_, static_cast<unsigned char>(0));
  }
  if (call.size != nullptr) *call.size = Random(-1, 2 * std::max(capacity_, 0) + 1);
  call.result = Random(-1, 1);
}

Findings HostWatch::AllFindings() const {
  Findings all = findings_;
  if (const char* const name = foreign_call_) {
    all.emplace("calls", std::string("calls ") + name + " from a thread of its own; the host serves one thread");
  }
  if (!frames_.empty() && fault_.hidden != "SX_FreeTGF") {
    all.emplace("frames", "keeps " + Counted(static_cast<long>(frames_.size()), "frame") +
                              " of the host, such as that of " + frames_.begin()->second.words);
  }
  if (const std::string edits = EditFault(); !edits.empty()) all.emplace("edits", edits);
  return all;
}

std::string HostWatch::EditFault() const {
  const std::string& hidden = fault_.hidden;
  const auto fault = [&](const Edits& edits, const char* what, bool start_hidden, bool end_hidden) -> std::string {
    if ((edits.closed >= edits.opened || end_hidden) && (edits.closed <= edits.asked || start_hidden)) return {};
    return "opens " + Counted(edits.opened, what) + " and closes " + std::to_string(edits.closed);
  };
  std::string plain = fault(edits_, "edit", StartsEdit(hidden), EndsEdit(hidden));
  if (!plain.empty()) return plain;
  std::string mass = fault(mass_edits_, "mass edit", hidden == "SX_StartMassEdit", hidden == "SX_EndMassEdit");
  if (!mass.empty() || !fault_.None() || edits_.asked == 0 || change_outside_.empty()) return mass;
  return "opens an edit, yet changes the score outside of it: " + change_outside_ +
         "; undoing the edit leaves that as it is";
}

std::string HostWatch::FreedFrameAt(const void* address) const {
  constexpr std::uintptr_t kPage = 4096;
  const auto place = [](const void* at) { return reinterpret_cast<std::uintptr_t>(at) / kPage; };
  for (const auto& [frame, words] : freed_) {
    if (place(frame) == place(address)) return words;
  }
  return {};
}

void HostWatch::InterruptEdits(bool interrupt) {
  interrupt_edits_ = interrupt;
  edits_ = {};
}

}  // namespace sok
