// --trace: every host call with its arguments and its answer, one a line.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "host/engine/session.h"
#include "host/runner/run/options.h"

namespace sok {

// Prints calls as they end, or, for TraceMode::kChanged, those of the staff-measures of which a frame was changed,
// each under a heading with its slot and measure. Calls before the first frame belong to none.
class Tracer : public CallObserver {
 public:
  Tracer(TraceMode mode, std::FILE* out) : mode_(mode), out_(out) {}
  ~Tracer() override { EndCell(); }

  bool WantsArguments() const override { return true; }
  void After(HostCall& call) override;

 private:
  void BeginCell(const HostCall& call);
  void EndCell();

  TraceMode mode_;
  std::FILE* out_;
  std::vector<std::string> cell_calls_;
  short slot_ = 0;  // of the calls in cell_calls_
  short measure_ = 0;
  bool saved_ = false;
};

}  // namespace sok
