// Writing so that nothing is ever lost: a file is either what it was or wholly what it is to be.
#pragma once

#include <sys/types.h>

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace sok {

// What tells that a file has been changed since.
struct FileState {
  dev_t device = 0;
  ino_t number = 0;
  off_t size = 0;
  timespec modified{};

  bool operator==(const FileState& other) const;
};

// Nothing for what is no file: a path that leads nowhere, a pipe, "-".
std::optional<FileState> StateOf(const std::string& path);

// Replaces a file, or makes it: written beside it under a temporary name, flushed to the disk, renamed. The file that
// is replaced hands on its owner, group, permissions, access list and extended attributes, and links to it are
// followed.
//
// Where a new file could not have all of these, and where the file has other names (hard links), it is written over
// instead, while its old bytes stay beside it in a hidden file; they are put back when that fails, and only the loss of
// the whole process or machine leaves that file to be renamed by hand.
//
// Pipes and devices are written straight; "-" is stdout. Throws Error, and the file is what it was: also when it
// is not in the state `before` any more, so that nobody else's work is written over. The temporary file is removed on
// every failure, and when a signal ends the program.
void WriteFile(const std::string& path, std::string_view bytes, const std::optional<FileState>& before = {});

// The same for a file that is there, which is kept under its name with ".bak" added, or ".bak2", ".bak3" … where that
// is taken; that name. There is no backup where the file stays what it was.
std::string WriteFileWithBackup(const std::string& path, std::string_view bytes,
                                const std::optional<FileState>& before = {});

// From now on stdout takes results alone: what anybody else writes to it, an extension for one, goes to stderr.
void KeepStdoutForResults();

// Writes all bytes to an open file; false, with errno set, when it cannot.
bool WriteAll(int file, std::string_view bytes);

}  // namespace sok
