#include "host/runner/report/engraving.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <set>

#include "host/runner/files/output_file.h"
#include "host/runner/report/embedded.h"
#include "host/runner/report/json.h"
#include "host/runner/report/picture_text.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

std::vector<std::string> ModuleFolders() {
  std::vector<std::string> folders;
  if (const char* const path = std::getenv("NODE_PATH")) {
    for (const std::string_view folder : Split(path, ':')) {
      if (!folder.empty()) folders.emplace_back(folder);
    }
  }
  const char* const data = std::getenv("XDG_DATA_HOME");
  const char* const home = std::getenv("HOME");
  if (data != nullptr && *data != '\0') {
    folders.push_back(std::string(data) + "/sokrun/node_modules");
  } else if (home != nullptr) {
    folders.push_back(std::string(home) + "/.local/share/sokrun/node_modules");
  }
  return folders;
}

// A pipe whose ends are closed with its scope, or before.
struct Pipe {
  Pipe() { is_open = pipe2(ends, O_CLOEXEC) == 0; }
  ~Pipe() {
    CloseEnd(0);
    CloseEnd(1);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  void CloseEnd(int end) {
    if (ends[end] >= 0) close(ends[end]);
    ends[end] = -1;
  }

  int ends[2] = {-1, -1};  // to read from, to write to
  bool is_open = false;
};

// Starts Node on a script between two pipes; 0 when it cannot be run.
pid_t StartNode(const char* script, const Pipe& to_child, const Pipe& from_child) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, to_child.ends[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, from_child.ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  const char* arguments[] = {"node", "-e", script, nullptr};
  pid_t process = 0;
  const int error = posix_spawnp(&process, "node", &actions, nullptr, const_cast<char**>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

std::string ReadToEnd(int file) {
  std::string output;
  char buffer[65536];
  for (;;) {
    const ssize_t count = read(file, buffer, sizeof buffer);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return output;
    output.append(buffer, static_cast<std::size_t>(count));
  }
}

// Runs Node on a script with `input` on its stdin; what it prints, empty when it cannot be run. The script reads all
// of its input before it prints.
std::string RunNode(const char* script, const std::string& input) {
  Pipe to_child, from_child;
  if (!to_child.is_open || !from_child.is_open) return {};
  const pid_t process = StartNode(script, to_child, from_child);
  if (process == 0) return {};
  to_child.CloseEnd(0);
  from_child.CloseEnd(1);
  const auto before = std::signal(SIGPIPE, SIG_IGN);  // a script that dies early is no reason to
  WriteAll(to_child.ends[1], input);
  std::signal(SIGPIPE, before);
  to_child.CloseEnd(1);
  std::string output = ReadToEnd(from_child.ends[0]);
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
  return output;
}

}  // namespace

Engraving Engrave(const Score& score, const std::string& text_after, const std::vector<Change>& changes, int limit) {
  const PictureTexts texts = NameChangedNotes(score, text_after, changes);
  std::set<short> measures;
  for (const Change& change : changes) measures.insert(change.measure);
  const Json request = {{"modules", ModuleFolders()},
                        {"before", texts.before},
                        {"after", texts.after},
                        {"measures", measures},
                        {"limit", limit}};
  const std::string output = RunNode(kEngraveScript, Dump(request, -1));

  Engraving engraving;
  const Json answer = Json::parse(output, nullptr, false);
  if (output.empty()) {
    engraving.trouble = "Node could not be run";
  } else if (!answer.is_object() || answer.contains("error") || !answer.contains("systems")) {
    engraving.trouble = answer.is_object() ? answer.value("error", "") : "Verovio stopped in the middle";
  } else {
    engraving.version = answer.value("version", "");
    engraving.left = answer.value("left", 0L);
    for (const Json& system : answer["systems"]) {
      const NumberRange measures{system.value("first", short{1}), system.value("last", short{1})};
      engraving.systems.push_back({measures, system.value("before", ""), system.value("after", "")});
    }
  }
  return engraving;
}

}  // namespace sok
