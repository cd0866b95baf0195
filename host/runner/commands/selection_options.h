// The options of a selection, the same for every command that works on a part of a score.
#pragma once

#include "host/runner/run/selection.h"

namespace CLI {
class App;
}

namespace sok {

inline constexpr const char* kSelectionGroup = "Selection";

// Adds --measures, --numbers, --staves and --parts. What they say is in `selection` when the command line is read;
// nonsense throws UsageError then.
void AddSelectionOptions(CLI::App& command, Selection& selection);

// Adds -j, the number of files at a time; 0 becomes the number of processors.
void AddJobsOption(CLI::App& command, int& jobs);

}  // namespace sok
