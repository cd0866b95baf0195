#include "host/runner/run/batch.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <map>
#include <vector>

#include "host/errors.h"
#include "host/runner/files/output_file.h"
#include "host/runner/run/cleanup.h"
#include "host/runner/run/memory.h"

namespace sok {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLargestAnswer = std::size_t{1} << 30;

// Before every answer, so that one that was cut off, or that somebody else wrote, is known.
struct AnswerHead {
  char mark[8] = {'s', 'o', 'k', 'r', 'u', 'n', ':', '\n'};
  std::uint64_t size = 0;
};

pid_t this_worker = 0;  // in a child: itself

struct Worker {
  std::size_t index = 0;
  pid_t process = 0;
  pid_t target = 0;        // of signals: the process, or its group as a negative number
  int pipe = -1;           // what it answers; -1 when that has ended
  Clock::time_point last;  // when it has to be done
  bool late = false;
  std::string bytes;
};

[[noreturn]] void FailToStart(int error) {
  throw Error(std::string("no process can be started: ") + std::strerror(error));
}

// Children that end interrupt the waiting for them, and nothing else.
class ChildSignals {
 public:
  ChildSignals() {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(SIGCHLD, &action, &before_);
    sigset_t children;
    sigemptyset(&children);
    sigaddset(&children, SIGCHLD);
    sigprocmask(SIG_BLOCK, &children, &mask_);
    sigdelset(&mask_, SIGCHLD);
  }
  ~ChildSignals() { Restore(); }
  ChildSignals(const ChildSignals&) = delete;
  ChildSignals& operator=(const ChildSignals&) = delete;

  void Restore() const {
    sigaction(SIGCHLD, &before_, nullptr);
    sigprocmask(SIG_SETMASK, &mask_, nullptr);
  }
  const sigset_t* waiting() const { return &mask_; }

 private:
  struct sigaction before_ {};
  sigset_t mask_{};  // without SIGCHLD
};

std::string FailureOf(int status, const std::string& bytes) {
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    return "the process that ran the extension was ended by signal " + std::to_string(signal) + " (" +
           strsignal(signal) + ")";
  }
  const int code = WEXITSTATUS(status);
  if (code == kOutOfMemoryStatus) return "not enough memory";
  if (code != 0 || bytes.empty()) return "the extension ended the process, with exit code " + std::to_string(code);
  AnswerHead head, expected;
  if (bytes.size() >= sizeof head) std::memcpy(&head, bytes.data(), sizeof head);
  expected.size = bytes.size() - sizeof head;
  const bool sound = bytes.size() >= sizeof head && std::memcmp(&head, &expected, sizeof head) == 0;
  return sound ? std::string() : kSenselessAnswer;
}

class Batch {
 public:
  Batch(const BatchLimits& limits, const BatchCallbacks& callbacks) : limits_(limits), callbacks_(callbacks) {}

  // Workers are left when something was thrown.
  ~Batch() {
    if (workers_.empty()) return;
    CleanUp();
    for (const Worker& worker : workers_) ForgetWorker(worker.target);
  }

  void Run(std::size_t count) {
    const auto jobs = static_cast<std::size_t>(std::clamp(limits_.jobs, 1, kMostWorkers));
    std::size_t next = 0;
    for (std::size_t turn = 0; turn < count;) {
      while (next < count && workers_.size() < jobs) Start(next++);
      Wait();
      for (std::size_t i = workers_.size(); i-- > 0;) Look(i);
      for (auto it = ended_.find(turn); it != ended_.end(); it = ended_.find(turn)) {
        callbacks_.done(turn++, std::move(it->second.first), std::move(it->second.second));
        ended_.erase(it);
      }
    }
  }

 private:
  void Start(std::size_t index) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) FailToStart(errno);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    std::cout.flush();
    std::fflush(nullptr);
    const pid_t parent = getpid();
    const pid_t process = fork();
    const int error = errno;
    if (process == 0) {
      close(ends[0]);
      Work(index, parent, ends[1]);
    }
    close(ends[1]);
    if (process < 0) {
      close(ends[0]);
      FailToStart(error);
    }
    if (InGroups()) setpgid(process, process);
    const pid_t target = InGroups() ? -process : process;
    NoteWorker(target);
    const auto last = InGroups() ? Clock::now() + std::chrono::seconds(limits_.seconds) : Clock::time_point::max();
    workers_.push_back({index, process, target, ends[0], last, false, {}});
  }

  // With a limit a worker and what it starts are a process group, which can be killed as a whole. Without one they stay
  // with the parent, where a terminal's keys reach them.
  bool InGroups() const { return limits_.seconds > 0; }

  [[noreturn]] void Work(std::size_t index, pid_t parent, int pipe) const {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(1);  // the parent died before
    signals_.Restore();
    ForgetParentsWork();
    if (InGroups()) {
      setpgid(0, 0);
      const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);  // reading a terminal would stop it
      dup2(nothing, STDIN_FILENO);
    }
    KeepStdoutForResults();
    EndSilentlyWhenMemoryRunsOut();
    this_worker = getpid();
    const std::string answer = callbacks_.work(index);
    AnswerHead head;
    head.size = answer.size();
    const bool written = WriteAll(pipe, {reinterpret_cast<const char*>(&head), sizeof head}) && WriteAll(pipe, answer);
    std::fflush(nullptr);
    _exit(written ? 0 : 1);
  }

  // Until there is something to read, a child has ended, or one is late.
  void Wait() {
    std::vector<pollfd> polls;
    auto last = Clock::time_point::max();
    for (const Worker& worker : workers_) {
      polls.push_back({worker.pipe, POLLIN, 0});
      if (!worker.late) last = std::min(last, worker.last);
    }
    timespec left{};
    if (last != Clock::time_point::max()) {
      const auto rest = std::max(last - Clock::now(), Clock::duration::zero());
      const auto seconds = std::chrono::floor<std::chrono::seconds>(rest);
      left = {seconds.count(), std::chrono::nanoseconds(rest - seconds).count()};
    }
    ppoll(polls.data(), polls.size(), last != Clock::time_point::max() ? &left : nullptr, signals_.waiting());
  }

  void Look(std::size_t i) {
    Worker& worker = workers_[i];
    if (Clock::now() >= worker.last) worker.late = true;
    if (worker.bytes.size() > kLargestAnswer) worker.late = true;
    if (worker.late) kill(worker.target, SIGKILL);
    int status = 0;
    const bool has_ended = waitpid(worker.process, &status, WNOHANG) == worker.process;
    Read(worker);
    if (!has_ended) return;
    if (worker.pipe >= 0) close(worker.pipe);
    if (InGroups()) kill(worker.target, SIGKILL);  // what it left behind
    ForgetWorker(worker.target);
    std::string failure = FailureOf(status, worker.bytes);
    if (worker.late) failure = "the extension takes longer than it may";
    if (worker.bytes.size() > kLargestAnswer) failure = "the extension's process answers without end";
    worker.bytes.erase(0, failure.empty() ? sizeof(AnswerHead) : std::string::npos);
    ended_[worker.index] = {std::move(worker.bytes), std::move(failure)};
    workers_.erase(workers_.begin() + static_cast<std::ptrdiff_t>(i));
    callbacks_.progress(++total_ended_);
  }

  // What there is to read now.
  static void Read(Worker& worker) {
    char buffer[65536];
    while (worker.pipe >= 0 && worker.bytes.size() <= kLargestAnswer) {
      const ssize_t count = read(worker.pipe, buffer, sizeof buffer);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0 && errno == EAGAIN) return;
      if (count > 0) {
        worker.bytes.append(buffer, static_cast<std::size_t>(count));
        continue;
      }
      close(worker.pipe);
      worker.pipe = -1;
    }
  }

  const BatchLimits limits_;
  const BatchCallbacks& callbacks_;
  const ChildSignals signals_;
  std::vector<Worker> workers_;
  std::map<std::size_t, std::pair<std::string, std::string>> ended_;  // answers that wait for their turn
  std::size_t total_ended_ = 0;
};

}  // namespace

void RunInProcesses(std::size_t count, const BatchLimits& limits, const BatchCallbacks& callbacks) {
  CleanUpOnSignals();
  Batch(limits, callbacks).Run(count);
}

void EndCopies() {
  if (this_worker != 0 && this_worker != getpid()) _exit(0);
}

}  // namespace sok
