#include "host/runner/run/trace.h"

#include <string_view>

#include "host/runner/report/frame_table.h"
#include "host/runner/report/shown_text.h"

namespace sok {

namespace {

bool IsLoad(const HostCall& call) { return std::string_view(call.name) == "SX_LoadTGF"; }
bool IsSave(const HostCall& call) { return std::string_view(call.name) == "SX_SaveTGF" && call.result != 0; }

std::string EntriesOf(const EXTGF2005a& frame) {
  const EXENTRY* const entries = frame.entries;
  const short count = frame.count;
  return EntriesText({entries, entries != nullptr && count > 0 ? static_cast<std::size_t>(count) : 0});
}

// What a call answered. Addresses differ from run to run; what counts is whether there is one.
std::string AnswerOf(const HostCall& call) {
  if (!IsLoad(call)) return std::to_string(call.result);
  if (call.result == 0) return "null";
  if (call.frame == nullptr) return "frame";
  const short count = call.frame->count;
  return "frame of " + std::to_string(count) + (count == 1 ? " entry" : " entries");
}

std::string LineOf(const HostCall& call) {
  const std::string line = std::string(call.name) + "(" + call.arguments + ") -> " + AnswerOf(call);
  return ShownText(IsSave(call) ? line + ": " + EntriesOf(*call.frame) : line);
}

}  // namespace

void Tracer::After(HostCall& call) {
  std::string line = LineOf(call);
  if (mode_ == TraceMode::kAll) {
    std::fprintf(out_, "%s\n", line.c_str());
    return;
  }
  BeginCell(call);
  saved_ = saved_ || IsSave(call);
  cell_calls_.push_back(std::move(line));
}

// A load of another staff-measure's frame begins that one's calls.
void Tracer::BeginCell(const HostCall& call) {
  int list = 0, slot = 0, measure = 0;
  if (!IsLoad(call) || std::sscanf(call.arguments.c_str(), "%d %d %d", &list, &slot, &measure) != 3) return;
  if (slot == slot_ && measure == measure_) return;
  EndCell();
  slot_ = static_cast<short>(slot);
  measure_ = static_cast<short>(measure);
}

void Tracer::EndCell() {
  if (saved_) {
    std::fprintf(out_, "measure %d, staff %d:\n", measure_, slot_);
    for (const std::string& line : cell_calls_) std::fprintf(out_, "  %s\n", line.c_str());
  }
  cell_calls_.clear();
  saved_ = false;
}

}  // namespace sok
