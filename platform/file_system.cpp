#include "platform/file_system.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <new>

namespace sok {
namespace {

// The kind of what stands at a path, as in S_IFMT; 0 when nothing does.
mode_t KindOf(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

}  // namespace

void RunOutOfMemory() {
  if (const std::new_handler handler = std::get_new_handler()) handler();
  throw std::bad_alloc();
}

std::string RealPath(const std::string& path) {
  errno = 0;
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
  if (resolved == nullptr && errno == ENOMEM) RunOutOfMemory();
  return resolved != nullptr ? resolved.get() : std::string();
}

bool Exists(const std::string& path) { return KindOf(path) != 0; }
bool IsDirectory(const std::string& path) { return KindOf(path) == S_IFDIR; }
bool IsFile(const std::string& path) { return KindOf(path) == S_IFREG; }

std::vector<std::string> ListFolder(const std::string& path) {
  std::vector<std::string> names;
  errno = 0;
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), &closedir);
  if (folder == nullptr && errno == ENOMEM) RunOutOfMemory();
  if (folder == nullptr) return names;
  while (const dirent* entry = readdir(folder.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string ParentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == 0 || slash == path.npos ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace sok
