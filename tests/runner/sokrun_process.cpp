#include "tests/runner/sokrun_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <pugixml.hpp>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

Folder::Folder() {
  std::string name = (fs::temp_directory_path() / "sokrun_test.XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = name;
}

Folder::~Folder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string Folder::Write(const std::string& name, const std::string& bytes) const {
  const fs::path path = path_ / name;
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  return path.string();
}

std::string Folder::Read(const std::string& name) const {
  std::ifstream file(path_ / name, std::ios::binary);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::vector<std::string> Folder::Names(const std::string& below) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_ / below)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

Ended Sokrun(const std::vector<std::string>& arguments, const Surroundings& surroundings) {
  const Folder streams;
  const std::string in = streams.Write("in", surroundings.input), out = streams / "out", err = streams / "err";
  std::vector<std::string> words = {SOKRUN_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  int alive[2];  // open for writing in sokrun and what it starts, as long as they live
  if (pipe(alive) != 0) throw std::runtime_error("no pipe");
  const pid_t process = fork();
  if (process == 0) {
    close(alive[0]);
    if (!surroundings.folder.empty() && chdir(surroundings.folder.c_str()) != 0) _exit(126);
    dup2(open(in.c_str(), O_RDONLY), STDIN_FILENO);
    dup2(open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    for (const std::string& variable : surroundings.environment) putenv(const_cast<char*>(variable.c_str()));
    execv(SOKRUN_PROGRAM, pointers.data());
    _exit(127);
  }
  close(alive[1]);
  int status = 0;
  waitpid(process, &status, 0);
  char nothing;
  while (read(alive[0], &nothing, 1) > 0) {
  }
  close(alive[0]);
  Ended ended;
  if (WIFEXITED(status)) ended.exit_code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) ended.signal = WTERMSIG(status);
  ended.out = streams.Read("out");
  ended.err = streams.Read("err");
  return ended;
}

namespace {

std::string Note(const char* what, const char* type, int voice) {
  return "      <note>" + std::string(what) + "<duration>3</duration><voice>" + std::to_string(voice) + "</voice>" +
         type + "</note>\n";
}

std::string MeasureMusic(char letter) {
  constexpr const char* kPitch = "<pitch><step>C</step><octave>5</octave></pitch>";
  constexpr const char* kRest = "<rest measure=\"yes\"/>";
  constexpr const char* kHalf = "<type>half</type><dot/>";
  constexpr const char* kBackup = "      <backup><duration>3</duration></backup>\n";
  switch (letter) {
    case 'n':
      return Note(kPitch, kHalf, 1);
    case 'w':
      return Note(kRest, "", 1);
    case 'f':
      return Note(kRest, "<notations><fermata/></notations>", 1);
    case 'h': {
      std::string hidden = Note(kRest, "", 1);
      return hidden.replace(hidden.find("<note>"), 6, "<note print-object=\"no\">");
    }
    case 'l':
      return Note("<rest/>", kHalf, 1);
    case 'g':
      return "      <note><grace/>" + std::string(kPitch) + "<voice>1</voice><type>eighth</type></note>\n" +
             Note(kRest, "", 1);
    case 'b':
      return Note(kPitch, kHalf, 1) + kBackup + Note(kPitch, kHalf, 2);
    case '2':
      return Note(kPitch, kHalf, 2);
    default:
      return {};
  }
}

}  // namespace

std::string ScoreText(const std::vector<PartText>& parts, const std::vector<std::string>& numbers) {
  std::string list, music;
  int part_number = 0;
  for (const PartText& part : parts) {
    const std::string id = "P" + std::to_string(++part_number);
    list += "    <score-part id=\"" + id + "\"><part-name>" + part.name + "</part-name></score-part>\n";
    music += "  <part id=\"" + id + "\">\n";
    for (std::size_t i = 0; i < part.measures.size(); ++i) {
      music += "    <measure number=\"" + (numbers.empty() ? std::to_string(i + 1) : numbers[i]) + "\">\n";
      if (i == 0) {
        music +=
            "      "
            "<attributes><divisions>1</divisions><time><beats>3</beats><beat-type>4</beat-type></time></attributes>\n";
      }
      music += MeasureMusic(part.measures[i]) + "    </measure>\n";
    }
    music += "  </part>\n";
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<score-partwise version=\"4.0\">\n  <part-list>\n" + list +
         "  </part-list>\n" + music + "</score-partwise>\n";
}

std::vector<std::string> Letters(const std::string& score) {
  std::vector<std::string> parts;
  pugi::xml_document document;
  document.load_string(score.c_str());
  for (const pugi::xml_node part : document.child("score-partwise").children("part")) {
    parts.emplace_back();
    for (const pugi::xml_node measure : part.children("measure")) {
      char letter = '.';
      for (const pugi::xml_node note : measure.children("note")) {
        if (note.child("pitch")) letter = 'n';
        if (letter == '.') letter = note.child("rest").attribute("measure") ? 'w' : 'l';
      }
      parts.back() += letter;
    }
  }
  return parts;
}
