// Writing so that nothing is ever lost: a file is either what it was or wholly what it is to be.
#pragma once

#include <string>
#include <string_view>

namespace sok {

// Replaces a file, or makes it: written beside it under a temporary name, flushed to the disk, renamed. Keeps the
// permissions of a file that is replaced, and follows a link to it. Pipes and devices are written straight; "-" is
// stdout. Throws InputError, and the file is what it was.
//
// The temporary file is removed on every failure, and when a signal ends the program.
void WriteFile(const std::string& path, std::string_view bytes);

// The same for a file that is there, which is kept under its name with ".bak" added, or ".bak2", ".bak3" … where that
// is taken; that name. There is no backup where the file stays what it was.
std::string WriteFileWithBackup(const std::string& path, std::string_view bytes);

// From now on stdout takes results alone: what anybody else writes to it, an extension for one, goes to stderr.
void KeepStdoutForResults();

// Writes all bytes to an open file; false, with errno set, when it cannot.
bool WriteAll(int file, std::string_view bytes);

}  // namespace sok
