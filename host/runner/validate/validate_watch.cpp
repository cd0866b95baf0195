#include "host/runner/validate/validate_watch.h"

#include <algorithm>
#include <climits>
#include <sstream>
#include <string_view>
#include <type_traits>
#include <unordered_map>

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "platform/SokPlatform.h"

namespace sok {
namespace {

std::string gHidden;
bool IsHidden(const char* name) { return name == gHidden; }

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
#define SX_CUSTOM(result, name, parameters) {#name, KindOf<result>()},
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
  };
  return kinds;
}

bool StartsEdit(std::string_view name) { return name.starts_with("SX_StartSonkelEdit"); }
bool EndsEdit(std::string_view name) { return name == "SX_EndSonkelEdit" || name == "SX_CancelSonkelEdit"; }
bool LoadsRecord(std::string_view name) { return name == "SX_LoadEData"; }

// Calls whose answer says whether they were done: other answers would be lies about the extension's own memory.
bool AnswersSuccess(std::string_view name) {
  return name.ends_with("EData") || name.ends_with("EXENTRY") || name.ends_with("TGF") || name.ends_with("Edit") ||
         StartsEdit(name);
}

std::string VersionText(const HostCall& call) {
  std::ostringstream text;
  text << "calls " << call.name << " with the interface version 0x" << std::hex << std::uppercase << call.version
       << " instead of 0x" << kInterfaceVersion;
  return text.str();
}

}  // namespace

HostWatch::HostWatch(const HostFault& fault) : fault_(fault), random_(fault.seed.value_or(0)) {
  gHidden = fault.hidden;
  SokPlatformHideFunctions(IsHidden);
}

bool HostWatch::Before(HostCall& call) {
  const auto number = static_cast<long>(calls_.size());
  const std::string_view name = call.name;
  calls_.emplace_back(name);
  if (name == "SX_FreeTGF" && frames_.erase(call.frame) == 0 && bad_free_.empty()) {
    bad_free_ = call.frame == nullptr ? "frees a null frame" : "frees a frame that it does not hold";
  }
  if (bad_version_.empty() && !HasKnownVersion(call)) bad_version_ = VersionText(call);
  if (EndsEdit(name)) ++edits_.closed;
  if (name == "SX_EndMassEdit") ++mass_edits_.closed;
  capacity_ = call.size != nullptr ? *call.size : 0;
  if (number == fault_.refused_call) return false;
  return !fault_.seed || Random(0, 5) != 0;
}

void HostWatch::After(HostCall& call) {
  if (fault_.seed) Vary(call);
  const std::string_view name = call.name;
  if (name == "SX_LoadTGF" && call.result != 0) frames_[call.frame] = call.arguments;
  if (StartsEdit(name)) ++edits_.asked, edits_.opened += call.result != 0;
  if (name == "SX_StartMassEdit") ++mass_edits_.asked, mass_edits_.opened += call.result != 0;
}

void HostWatch::Vary(HostCall& call) {
  const std::string_view name = call.name;
  if (Random(0, 2) != 0) return;
  if (name == "SX_LoadTGF") {
    EXTGF2005a* const frame = call.frame;
    if (call.result == 0 || frame == nullptr) return;
    for (int i = 0; i < frame->count; ++i) {
      EXENTRY& entry = frame->entries[i];
      entry.duration = static_cast<unsigned short>(Random(0, USHRT_MAX));
      entry.flags ^= static_cast<unsigned int>(Random(INT_MIN, INT_MAX));
      entry.noteCount = static_cast<short>(Random(0, 12));
    }
    frame->count = static_cast<short>(Random(Random(0, 3) == 0 ? SHRT_MIN : 0, frame->count));
  } else if (LoadsRecord(name)) {
    if (call.buffer != nullptr && capacity_ > 0) {
      auto* const bytes = static_cast<unsigned char*>(call.buffer);
      // Texts end in a zero unit, hence the last two bytes.
      std::generate_n(bytes, capacity_, [this] { return static_cast<unsigned char>(Random(0, UCHAR_MAX)); });
      std::fill(bytes + std::max(capacity_ - 2, 0), bytes + capacity_, static_cast<unsigned char>(0));
    }
    if (call.size != nullptr) *call.size = Random(-1, 2 * std::max(capacity_, 0) + 1);
    call.result = Random(-1, 1);
  } else if (name == "SX_GetMaxLayers") {
    call.result = Random(-1, 8);
  } else if (AnswersSuccess(name)) {
    if (call.result != 0) call.result = Random(0, 1) == 0 ? -1 : 0x100;
  } else if (AnswerKinds().at(name) == AnswerKind::kPointer) {
    call.result = 0;
  } else if (AnswerKinds().at(name) == AnswerKind::kNumber) {
    call.result = Random(SHRT_MIN, SHRT_MAX);
  }
}

std::string HostWatch::FrameFault() const {
  if (!bad_free_.empty()) return bad_free_;
  if (fault_.hidden == "SX_FreeTGF" || frames_.empty()) return {};
  return "keeps " + std::to_string(frames_.size()) + " of the host's frames; one of them was loaded with (" +
         frames_.begin()->second + ")";
}

std::string HostWatch::EditFault() const {
  const std::string& hidden = fault_.hidden;
  const auto fault = [&](const Edits& edits, const char* what, bool start_hidden, bool end_hidden) -> std::string {
    if ((edits.closed >= edits.opened || end_hidden) && (edits.closed <= edits.asked || start_hidden)) return {};
    return "opens " + std::to_string(edits.opened) + " " + what + " and closes " + std::to_string(edits.closed);
  };
  std::string plain = fault(edits_, "edits", StartsEdit(hidden), EndsEdit(hidden));
  if (!plain.empty()) return plain;
  return fault(mass_edits_, "mass edits", hidden == "SX_StartMassEdit", hidden == "SX_EndMassEdit");
}

const std::vector<std::string>& EntryPointNames() {
  static const std::vector<std::string> names = {
#define SX_ENTRY(result, name, parameters, arguments, fallback) #name,
#define SX_CUSTOM(result, name, parameters) #name,
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
  };
  return names;
}

}  // namespace sok
