// Validation of an extension bundle: which checks there are, and running them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/engine/document.h"

namespace sok {

struct ValidateOptions {
  std::string plugin;
  std::vector<std::string> kinds;  // the kinds of check to run; empty: all
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

// In the order in which they run.
const std::vector<CheckKind>& CheckKinds();

struct CheckResult {
  std::string kind;
  std::string name;
  std::string failure;  // empty: passed
};

// Runs the checks on copies of a score, each in a process of its own. An extension that cannot be loaded is not checked
// further; a command that fails on a sound host is not run on a faulty one. Such failures are among the results
// whatever the kinds asked for.
std::vector<CheckResult> Validate(const ValidateOptions& options, const Document& score);

}  // namespace sok
