// Questions to the file system that answer "no" instead of failing. What runs out of memory goes the way of `new`.
#pragma once

#include <string>
#include <vector>

namespace sok {

// The absolute path with links and dots resolved; empty when nothing is there.
std::string RealPath(const std::string& path);

bool Exists(const std::string& path);
bool IsDirectory(const std::string& path);
bool IsFile(const std::string& path);

// The names in a folder, sorted; none when it cannot be read.
std::vector<std::string> ListFolder(const std::string& path);

// What `new` does when it fails: asks the new-handler, when there is one, and throws std::bad_alloc. For C functions
// that ran out of memory.
[[noreturn]] void RunOutOfMemory();

// The part of a path before its last slash, and the part behind it.
std::string ParentOf(const std::string& path);
std::string NameOf(const std::string& path);

}  // namespace sok
