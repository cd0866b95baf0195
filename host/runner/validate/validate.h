// Validation of an extension bundle: which checks there are, and running them.
//
// This folder has the parts: the checks themselves, the plan of their cases, the process of each case, the host that is
// watched and made faulty, the score that commands run on.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/engine/document.h"

namespace sok {

// One case of a kind of check, counted from 0: "failing 5".
struct CheckCase {
  std::string kind;
  int number = 0;
};

struct ValidateOptions {
  std::string plugin;
  std::vector<std::string> kinds;  // the kinds of check to run; empty: all
  std::optional<CheckCase> only;   // this case alone
  bool in_process = false;         // `only`: in this very process, for a debugger
  bool guard_frames = true;        // so that the use of a freed frame ends the process
  unsigned int seed = 0;
  int rounds = 24;        // of random answers, a command
  int refusals = 100000;  // of calls, a command; spread evenly where it makes more
  int seconds = 10;       // that a check may take
  int jobs = 1;
};

struct CheckKind {
  std::string_view name;
  std::string_view what;
};

// In the order in which they are reported.
const std::vector<CheckKind>& CheckKinds();

struct CheckResult {
  std::string kind;
  int number = 0;  // among those of its kind
  std::string name;
  std::string failure;    // empty: passed
  std::string last_call;  // of the host, where the process was ended
};

struct SkippedChecks {
  std::string kind;
  std::string why;
};

struct ValidationReport {
  std::vector<CheckResult> results;
  std::vector<SkippedChecks> skipped;
};

// Runs the checks on copies of a score, each in a process of its own. An extension that cannot be loaded is not checked
// further; a command that fails on a sound host is not run on a faulty one. Such failures are among the results
// whatever the kinds asked for.
ValidationReport Validate(const ValidateOptions& options, const Document& score);

}  // namespace sok
