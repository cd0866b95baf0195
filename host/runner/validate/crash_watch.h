// What can be told of a crash in a check's process, before the process goes.
#pragma once

#include "host/runner/validate/validate_watch.h"

namespace sok {

// As long as this lives, a crash is told of through `watch`: the freed frame that was used, or what the address
// sanitizer found. One at a time in a process.
class CrashWatch {
 public:
  explicit CrashWatch(const HostWatch& watch);
  ~CrashWatch();
  CrashWatch(const CrashWatch&) = delete;
  CrashWatch& operator=(const CrashWatch&) = delete;
};

// From now on crashes of this process are told of: uses of freed frames where frames are guarded, and memory faults
// where the address sanitizer is there.
void TellOfCrashes(bool frames_guarded);

}  // namespace sok
