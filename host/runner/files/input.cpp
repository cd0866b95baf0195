#include "host/runner/files/input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "host/errors.h"
#include "host/runner/files/kind.h"
#include "host/runner/report/text.h"
#include "host/runner/run/memory.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw Error(DisplayName(path) + ": " + reason);
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

// Reads the start and the end of a file; what cannot be read is left to whoever opens it in earnest.
bool MayHoldScore(const std::string& path) {
  constexpr std::streamoff kPiece = 65536;
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  const std::streamoff size = file.tellg();
  if (size < 0) return true;
  const auto read = [&](std::streamoff from) {
    std::string bytes(static_cast<std::size_t>(std::min(size - from, kPiece)), '\0');
    file.seekg(from).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
  };
  const std::string start = read(0), end = read(std::max<std::streamoff>(size - kPiece, 0));
  return !file || LooksLikeScore(start, end);
}

// The scores of a folder.
class FolderSearch {
 public:
  FolderSearch(const std::string& folder, const std::string& left_out) : folder_(folder), left_out_(left_out) {}

  void AddTo(FoundInputs& found) {
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder_, error), end; !error && it != end; it.increment(error)) Visit(it);
    std::ranges::sort(scores_, {}, &Input::path);
    std::string trouble = error ? error.message() : std::string();
    if (!error && scores_.empty()) trouble = "no scores (.musicxml, .xml, .mxl) in this folder";
    if (!trouble.empty()) scores_.push_back({folder_.string(), {}, folder_.string() + ": " + trouble});
    found.inputs.insert(found.inputs.end(), scores_.begin(), scores_.end());
    if (passed_over_ == 0) return;
    found.messages.push_back(folder_.string() + ": passed over " + Counted(passed_over_, "file") +
                             " without a MusicXML score");
  }

 private:
  void Visit(fs::recursive_directory_iterator& it) {
    std::error_code ignored;
    const std::string name = it->path().filename().string();
    if (name.starts_with('.') || fs::equivalent(it->path(), left_out_, ignored)) {
      if (it->is_directory(ignored)) it.disable_recursion_pending();
    } else if (!IsScoreName(name) || !it->is_regular_file(ignored)) {
      return;
    } else if (MayHoldScore(it->path().string())) {
      scores_.push_back({it->path().string(), it->path().lexically_relative(folder_).string()});
    } else {
      ++passed_over_;
    }
  }

  const fs::path folder_;
  const fs::path left_out_;
  std::vector<Input> scores_;
  long passed_over_ = 0;
};

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

FoundInputs FindInputs(const std::vector<std::string>& paths, const std::string& left_out) {
  FoundInputs found;
  for (const std::string& path : paths) {
    std::error_code error;
    if (path != kStream && fs::is_directory(path, error)) {
      FolderSearch(path, left_out).AddTo(found);
      continue;
    }
    Input input{path, fs::path(path).filename().string()};
    if (path != kStream && !fs::exists(path, error)) {
      input.error = path + ": " + (error ? error.message() : std::strerror(ENOENT));
    }
    found.inputs.push_back(std::move(input));
  }
  return found;
}

std::unique_ptr<Score> ReadScore(const std::string& path, const ReadOptions& options) {
  NameWork(DisplayName(path));
  std::string bytes = ReadBytes(path);
  if (const std::string_view kind = ForeignKind(bytes, path); !kind.empty()) {
    Fail(path, "this is " + std::string(kind) + "; export the score as MusicXML (.musicxml or .mxl) and take that");
  }
  return Score::Read(std::move(bytes), DisplayName(path), options);
}

}  // namespace sok
