// Runs the built sokrun as a user does: a command line, files, an exit code.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// A folder that goes away with the test.
class Folder {
 public:
  Folder();
  ~Folder();
  std::string operator/(const std::string& name) const { return (path_ / name).string(); }
  std::string path() const { return path_.string(); }

  // Writes a file, making its folder; its path.
  std::string Write(const std::string& name, const std::string& bytes) const;
  std::string Read(const std::string& name) const;
  // The names in the folder, hidden ones too, sorted.
  std::vector<std::string> Names(const std::string& below = ".") const;

 private:
  std::filesystem::path path_;
};

struct Ended {
  int exit_code = -1;  // -1 when a signal ended it
  int signal = 0;
  std::string out;
  std::string err;
};

struct Surroundings {
  std::string input = {};                     // on stdin
  std::vector<std::string> environment = {};  // "NAME=value", beside what the test has
  std::string folder = {};                    // to run in
};

// Returns when sokrun and whatever it started have ended.
Ended Sokrun(const std::vector<std::string>& arguments, const Surroundings& surroundings = {});

// A score in 3/4, one staff a part: a part is a name and a letter a measure.
//   n  a note          .  nothing             w  a whole-measure rest   f  the same under a fermata
//   h  w, not printed  l  a dotted half rest  g  w after a grace note   b  notes in two voices      2  in the second
//   only
struct PartText {
  std::string name;
  std::string measures;
};
std::string ScoreText(const std::vector<PartText>& parts, const std::vector<std::string>& numbers = {});

// The measures of every part as letters again: n with a pitch, w measure rest, l another rest, . nothing.
std::vector<std::string> Letters(const std::string& score);
