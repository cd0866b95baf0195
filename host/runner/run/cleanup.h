// What has to be done before the program ends, whatever ends it: unfinished files are removed, workers are ended.
//
// All of this may be called from a signal handler.
#pragma once

#include <sys/types.h>

namespace sok {

// The most workers at the same time.
inline constexpr int kMostWorkers = 1024;

// From now on signals that end the program clean up first. Signals that are ignored, as under nohup, stay ignored.
void CleanUpOnSignals();

// Notes a file that is not whole yet, its path shorter than PATH_MAX, at most two at a time; forgets it.
void NoteUnfinishedFile(const char* path);
void ForgetUnfinishedFile(const char* path);

// Notes a worker process, a whole process group where `process` is negative; forgets it. In a worker itself there is
// nothing to clean up of what its parent noted.
void NoteWorker(pid_t process);
void ForgetWorker(pid_t process);
void ForgetParentsWork();

// Asks all workers to end, kills those that have not ended after a second, and removes unfinished files.
void CleanUp();

}  // namespace sok
