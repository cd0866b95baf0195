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

// Runs Node on a script with `input` on its stdin; what it prints, empty when it cannot be run. The script reads all
// of its input before it prints.
std::string RunNode(const char* script, const std::string& input) {
  int to_child[2], from_child[2];
  if (pipe2(to_child, O_CLOEXEC) != 0) return {};
  if (pipe2(from_child, O_CLOEXEC) != 0) {
    close(to_child[0]);
    close(to_child[1]);
    return {};
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, to_child[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, from_child[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  const char* arguments[] = {"node", "-e", script, nullptr};
  pid_t process = 0;
  const int error = posix_spawnp(&process, "node", &actions, nullptr, const_cast<char**>(arguments), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(to_child[0]);
  close(from_child[1]);
  std::string output;
  if (error == 0) {
    const auto before = std::signal(SIGPIPE, SIG_IGN);  // a script that dies early is no reason to
    WriteAll(to_child[1], input);
    std::signal(SIGPIPE, before);
  }
  close(to_child[1]);
  char buffer[65536];
  for (ssize_t count = 0; error == 0 && (count = read(from_child[0], buffer, sizeof buffer)) != 0;) {
    if (count > 0) output.append(buffer, static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) break;
  }
  close(from_child[0]);
  while (error == 0 && waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
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
