#include "host/runner/run/cleanup.h"

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>

namespace sok {
namespace {

struct UnfinishedFile {
  std::atomic<bool> noted{false};  // set last and cleared first
  char path[PATH_MAX];
};

UnfinishedFile unfinished[2];
std::atomic<pid_t> workers[kMostWorkers];
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<pid_t>::is_always_lock_free);

extern "C" void CleanUpAndDie(int signal) {
  CleanUp();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

// Whether the worker has ended; a stopped one has not.
bool HasEnded(pid_t worker) {
  int status = 0;
  const pid_t ended = waitpid(std::abs(worker), &status, WNOHANG);
  return ended > 0 || (ended < 0 && errno == ECHILD);
}

void Signal(int signal) {
  for (const auto& worker : workers) {
    if (worker != 0) kill(worker, signal);
  }
}

bool WorkersLeft() {
  bool left = false;
  for (auto& worker : workers) {
    if (worker == 0) continue;
    if (!HasEnded(worker)) {
      left = true;
    } else if (worker > 0) {  // a group may outlive its leader
      worker = 0;
    }
  }
  return left;
}

}  // namespace

void CleanUpOnSignals() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXFSZ, SIGXCPU}) {
      struct sigaction current {};
      sigaction(signal, nullptr, &current);
      if (current.sa_handler != SIG_DFL) continue;
      struct sigaction action {};
      action.sa_handler = CleanUpAndDie;
      sigaction(signal, &action, nullptr);
    }
  });
}

void NoteUnfinishedFile(const char* path) {
  for (UnfinishedFile& file : unfinished) {
    if (file.noted) continue;
    std::strncpy(file.path, path, sizeof file.path - 1);
    file.noted = true;
    return;
  }
}

void ForgetUnfinishedFile(const char* path) {
  for (UnfinishedFile& file : unfinished) {
    if (file.noted && std::strcmp(file.path, path) == 0) file.noted = false;
  }
}

void NoteWorker(pid_t process) {
  for (auto& worker : workers) {
    pid_t nobody = 0;
    if (worker.compare_exchange_strong(nobody, process)) return;
  }
}

void ForgetWorker(pid_t process) {
  for (auto& worker : workers) {
    if (worker == process) worker = 0;
  }
}

void ForgetParentsWork() {
  for (UnfinishedFile& file : unfinished) file.noted = false;
  for (auto& worker : workers) worker = 0;
}

void CleanUp() {
  for (const UnfinishedFile& file : unfinished) {
    if (file.noted) unlink(file.path);
  }
  Signal(SIGTERM);
  Signal(SIGCONT);
  constexpr timespec kMoment{0, 10'000'000};
  for (int moments = 0; moments < 100 && WorkersLeft(); ++moments) nanosleep(&kMoment, nullptr);
  Signal(SIGKILL);
}

}  // namespace sok
