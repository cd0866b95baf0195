#include "platform/file_system.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>

namespace sok {

namespace fs = std::filesystem;

std::string RealPath(const std::string& path) {
  errno = 0;
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
  if (resolved == nullptr && errno == ENOMEM) throw std::bad_alloc();
  return resolved != nullptr ? resolved.get() : std::string();
}

bool Exists(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error);
}

bool IsDirectory(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

bool IsFile(const std::string& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

std::vector<std::string> ListFolder(const std::string& path) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(path, error), end; !error && entry != end; entry.increment(error)) {
    names.push_back(entry->path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string ParentOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == 0 || slash == path.npos ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

}  // namespace sok
