#include "host/runner/report/engraving.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <sstream>

#include "host/runner/files/output_file.h"
#include "host/runner/report/embedded.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

using Json = nlohmann::json;

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

// Verovio reads scores by parts only: turns measures of parts into parts of measures.
std::string ByParts(const std::string& text) {
  pugi::xml_document timewise, partwise;
  if (!timewise.load_string(text.c_str())) return text;
  pugi::xml_node root = partwise.append_child("score-partwise");
  std::map<std::string, pugi::xml_node> parts;
  for (const pugi::xml_node child : timewise.child("score-timewise")) {
    if (std::string_view(child.name()) != "measure") {
      root.append_copy(child);
      continue;
    }
    for (const pugi::xml_node part : child.children("part")) {
      pugi::xml_node& target = parts[part.attribute("id").value()];
      if (!target) {
        target = root.append_child("part");
        target.append_copy(part.attribute("id"));
      }
      pugi::xml_node measure = target.append_child("measure");
      for (const pugi::xml_attribute attribute : child.attributes()) measure.append_copy(attribute);
      for (const pugi::xml_node music : part) measure.append_copy(music);
    }
  }
  std::ostringstream out;
  partwise.save(out, "", pugi::format_raw);
  return out.str();
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

// Without what names a way of coding the characters: Verovio gets UTF-8 whatever the file was in.
std::string WithoutDeclaration(const std::string& text) {
  const std::size_t start = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  if (text.compare(start, 5, "<?xml") != 0) return text.substr(start);
  const std::size_t end = text.find("?>");
  return end == std::string::npos ? text : text.substr(end + 2);
}

}  // namespace

Engraving Engrave(const Score& score, const std::string& text_after, const std::vector<Change>& changes, int limit) {
  Json marks = Json::array();
  for (const Change& change : changes) {
    const bool added = change.kind != ChangeKind::kCleared;
    const std::string voice = added ? "" : score.Facts(change.slot, change.measure, change.layer).voice;
    marks.push_back({{"measure", change.measure}, {"staff", change.slot}, {"voice", voice}, {"added", added}});
  }
  const auto readable = [&score](const std::string& text) {
    return score.form() == "score-timewise" ? ByParts(text) : WithoutDeclaration(text);
  };
  const Json request = {{"modules", ModuleFolders()},
                        {"before", readable(score.Text())},
                        {"after", readable(text_after)},
                        {"marks", marks},
                        {"limit", limit}};
  const std::string output = RunNode(kEngraveScript, request.dump(-1, ' ', false, Json::error_handler_t::replace));

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
