// What is checked of one run of a command on a sound host, beside its host calls: what it answers and leaves behind.
#pragma once

#include "host/runner/validate/validate_checks.h"

namespace sok {

// What a command is run on.
enum class Scope { kWholeScore, kPart, kEnd };

// The region of a scope: a part is the middle staff in the middle measures, the end the last staff in the last measure.
EREGION RegionOf(const Document& document, Scope scope);

// "staves 1 to 3, measures 2 to 4".
std::string RegionText(const EREGION& region);

// Runs a command by the name of its entry point; all that is wrong, by kind.
Findings RunCommand(CheckHost& host, int command, Scope scope, const char* entry_point = "SonkelExtensionInvoke");

// Whether a command ends more edits than it starts. The kit keeps such an end from the host unless an edit is open, so
// some are left open before, by throwing through `starter`, a command that starts one. Throws Error when it
// does.
void CheckEnds(CheckHost& host, int starter, int command);

}  // namespace sok
