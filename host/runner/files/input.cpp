#include "host/runner/files/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "host/runner/commands/commands.h"
#include "host/runner/report/text.h"
#include "host/runner/run/memory.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw InputError(DisplayName(path) + ": " + reason);
}

bool IsScoreName(const std::string& name) {
  constexpr const char* kEndings[] = {".musicxml", ".xml", ".mxl"};
  return std::any_of(std::begin(kEndings), std::end(kEndings),
                     [&name](const char* ending) { return EndsWithIgnoringCase(name, ending); });
}

std::string ReadAll(int file, const std::string& path) {
  struct stat status {};
  if (fstat(file, &status) != 0) Fail(path, std::strerror(errno));
  if (S_ISDIR(status.st_mode)) Fail(path, "is a folder");
  std::string bytes;
  // One byte more than the file has, so that its end is met without a second buffer.
  bytes.resize(S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) + 1 : 65536);
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(2 * bytes.size());
    const ssize_t count = read(file, bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Fail(path, std::strerror(errno));
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

void FindScores(const fs::path& folder, std::vector<Input>& inputs) {
  const std::size_t before = inputs.size();
  std::error_code error;
  for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    std::error_code ignored;
    if (name.starts_with('.')) {
      if (it->is_directory(ignored)) it.disable_recursion_pending();
    } else if (IsScoreName(name) && it->is_regular_file(ignored)) {
      inputs.push_back({it->path().string(), it->path().lexically_relative(folder).string()});
    }
  }
  if (error) Fail(folder.string(), error.message());
  if (inputs.size() == before) Fail(folder.string(), "no scores (.musicxml, .xml, .mxl) in this folder");
  std::sort(inputs.begin() + static_cast<std::ptrdiff_t>(before), inputs.end(),
            [](const Input& left, const Input& right) { return left.path < right.path; });
}

}  // namespace

std::string ReadBytes(const std::string& path) {
  if (path == kStream) return ReadAll(STDIN_FILENO, path);
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) Fail(path, std::strerror(errno));
  try {
    std::string bytes = ReadAll(file, path);
    close(file);
    return bytes;
  } catch (...) {
    close(file);
    throw;
  }
}

std::string DisplayName(const std::string& path) { return path == kStream ? "stdin" : path; }

std::vector<Input> FindInputs(const std::vector<std::string>& paths) {
  std::vector<Input> inputs;
  for (const std::string& path : paths) {
    std::error_code error;
    if (path == kStream) {
      inputs.push_back({path, path});
    } else if (fs::is_directory(path, error)) {
      FindScores(path, inputs);
    } else if (fs::exists(path, error)) {
      inputs.push_back({path, fs::path(path).filename().string()});
    } else {
      Fail(path, error ? error.message() : std::strerror(ENOENT));
    }
  }
  return inputs;
}

std::unique_ptr<Score> ReadScore(const std::string& path, const ReadOptions& options) {
  NameWork(DisplayName(path));
  return Score::Read(ReadBytes(path), DisplayName(path), options);
}

}  // namespace sok
