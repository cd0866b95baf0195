// One case of a check: what is done in its process, and what that process answers.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "host/runner/validate/validate_checks.h"

namespace sok {

struct CaseAnswer {
  std::string failure = {};    // empty: passed
  std::string last_call = {};  // of the host, where the process was ended
  Findings findings = {};      // of a run on a sound host
  int command_count = 0;       // how many commands the extension has
  int edits_asked = 0;         // as HostWatch counts them
  std::size_t trace = 0;       // stands for all host calls
  std::vector<std::string> calls = {};
};

struct PlannedCase {
  std::string kind;
  std::string name;
  std::function<void(CheckHost& host, CaseAnswer& answer)> run;  // throws Error
  HostFault fault = {};
  std::string language = {};  // of the user; empty: as it is
  int command = 0;
  int number = 0;  // among those of its kind
};

}  // namespace sok
