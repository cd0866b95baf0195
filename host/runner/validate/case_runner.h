// Runs cases of checks: each in a process of its own, or all in this one for a debugger.
#pragma once

#include <vector>

#include "host/runner/validate/check_case.h"
#include "host/runner/validate/validate.h"

namespace sok {

// The answers in order of the cases. A process that ends otherwise than by answering is a failure of its case. Throws
// Error when no process can be started.
std::vector<CaseAnswer> RunCases(const std::vector<PlannedCase>& cases, const ValidateOptions& options,
                                 const Document& score, bool in_this_process);

}  // namespace sok
