#include "host/runner/run/trace.h"

#include <string_view>

#include "host/runner/report/frame_table.h"
#include "host/runner/report/shown_text.h"

namespace sok {

namespace {

std::string EntriesOf(const EXTGF2005a& frame) {
  const EXENTRY* const entries = frame.entries;
  const short count = frame.count;
  return EntriesText({entries, entries != nullptr && count > 0 ? static_cast<std::size_t>(count) : 0});
}

}  // namespace

void Tracer::After(HostCall& call) {
  const std::string_view name = call.name;
  std::string line = std::string(name) + "(" + call.arguments + ") -> ";
  // Addresses differ from run to run; what counts is whether there is one.
  const bool is_frame = name == "SX_LoadTGF";
  line += is_frame ? (call.result != 0 ? "frame" : "null") : std::to_string(call.result);
  if (is_frame && call.frame != nullptr && call.result != 0) {
    const short count = call.frame->count;
    line += " of " + std::to_string(count) + (count == 1 ? " entry" : " entries");
  }
  if (name == "SX_SaveTGF" && call.result != 0) line += ": " + EntriesOf(*call.frame);
  line = ShownText(line);
  if (mode_ == TraceMode::kAll) {
    std::fprintf(out_, "%s\n", line.c_str());
    return;
  }
  int list = 0, slot = 0, measure = 0;
  if (is_frame && std::sscanf(call.arguments.c_str(), "%d %d %d", &list, &slot, &measure) == 3 &&
      (slot != slot_ || measure != measure_)) {
    EndCell();
    slot_ = static_cast<short>(slot);
    measure_ = static_cast<short>(measure);
  }
  saved_ = saved_ || (name == "SX_SaveTGF" && call.result != 0);
  cell_calls_.push_back(std::move(line));
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
