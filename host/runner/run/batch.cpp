#include "host/runner/run/batch.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

#include "host/runner/commands/commands.h"
#include "host/runner/files/output_file.h"
#include "host/runner/run/memory.h"

namespace sok {
namespace {

struct Worker {
  std::size_t index = 0;
  pid_t process = 0;
  int pipe = -1;  // what it answers
  std::string answer;
};

Worker Start(std::size_t index, const BatchCallbacks& callbacks) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw InputError(std::string("no process can be started: ") + std::strerror(errno));
  std::fflush(nullptr);
  const pid_t parent = getpid();
  const pid_t process = fork();
  if (process < 0) {
    const int error = errno;
    close(ends[0]);
    close(ends[1]);
    throw InputError(std::string("no process can be started: ") + std::strerror(error));
  }
  if (process == 0) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) _exit(1);  // the parent died before
    close(ends[0]);
    LeaveMemoryToParent();
    const bool written = WriteAll(ends[1], callbacks.work(index));
    std::fflush(nullptr);
    _exit(written ? 0 : 1);
  }
  close(ends[1]);
  return {index, process, ends[0], {}};
}

std::string FailureOf(int status) {
  if (WIFSIGNALED(status)) {
    const int signal = WTERMSIG(status);
    if (signal == SIGALRM) return "the extension takes longer than it may";
    return "the process that ran the extension was ended by signal " + std::to_string(signal) + " (" +
           strsignal(signal) + ")";
  }
  if (WEXITSTATUS(status) == kOutOfMemoryStatus) return "not enough memory";
  if (WEXITSTATUS(status) != 0) {
    return "the process that ran the extension ended with status " + std::to_string(WEXITSTATUS(status));
  }
  return {};
}

// Reads what there is; false at the end.
bool ReadSome(Worker& worker) {
  char buffer[65536];
  const ssize_t count = read(worker.pipe, buffer, sizeof buffer);
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  worker.answer.append(buffer, static_cast<std::size_t>(count));
  return count > 0;
}

int Reap(const Worker& worker) {
  close(worker.pipe);
  int status = 0;
  while (waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace

void RunInProcesses(std::size_t count, int jobs, const BatchCallbacks& callbacks) {
  std::vector<Worker> workers;
  std::map<std::size_t, std::pair<std::string, std::string>> ended;  // answers that wait for their turn
  std::size_t next = 0, turn = 0, total_ended = 0;
  while (turn < count) {
    while (next < count && workers.size() < static_cast<std::size_t>(std::max(jobs, 1))) {
      workers.push_back(Start(next++, callbacks));
    }
    std::vector<pollfd> polls;
    polls.reserve(workers.size());
    for (const Worker& worker : workers) polls.push_back({worker.pipe, POLLIN, 0});
    if (poll(polls.data(), polls.size(), -1) < 0) continue;
    for (std::size_t i = workers.size(); i-- > 0;) {
      Worker& worker = workers[i];
      if (polls[i].revents == 0 || ReadSome(worker)) continue;
      std::string failure = FailureOf(Reap(worker));
      ended[worker.index] = {std::move(worker.answer), std::move(failure)};
      workers.erase(workers.begin() + static_cast<std::ptrdiff_t>(i));
      callbacks.progress(++total_ended);
    }
    for (auto it = ended.find(turn); it != ended.end(); it = ended.find(turn)) {
      callbacks.done(turn++, std::move(it->second.first), std::move(it->second.second));
      ended.erase(it);
    }
  }
}

}  // namespace sok
