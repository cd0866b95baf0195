#include "host/runner/files/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "host/runner/commands/commands.h"
#include "host/runner/files/input.h"
#include "host/runner/run/cleanup.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path, int error) {
  throw InputError((path == kStream ? "stdout" : path) + ": cannot be written: " + std::strerror(error));
}

int result_stream = STDOUT_FILENO;

// A new file beside its target that goes away unless it is renamed to it.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& target) : target_(target) {
    const fs::path path(target);
    std::string name = (path.parent_path() / ("." + path.filename().string() + ".XXXXXX")).string();
    if (name.size() >= PATH_MAX) Fail(target, ENAMETOOLONG);
    CleanUpOnSignals();
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);  // no signal between the file and the note of it
    file_ = mkostemp(name.data(), O_CLOEXEC);
    const int error = errno;
    if (file_ >= 0) NoteUnfinishedFile(name.c_str());
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (file_ < 0) Fail(target, error);
    name_ = std::move(name);
  }

  ~TemporaryFile() {
    if (file_ >= 0) close(file_);
    RemoveUnfinishedFile();
  }

  int file() const { return file_; }

  void Rename() {
    const int file = file_;
    file_ = -1;
    if (close(file) != 0 || rename(name_.c_str(), target_.c_str()) != 0) Fail(target_, errno);
    ForgetUnfinishedFile();
  }

 private:
  const std::string& target_;
  std::string name_;
  int file_ = -1;
};

mode_t CreationMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// The rename itself is safe on the disk once the folder is. Not every file system can do this.
void FlushFolder(const fs::path& folder) {
  const int file = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  fsync(file);
  close(file);
}

void WriteStraight(const std::string& path, std::string_view bytes) {
  const int file = path == kStream ? result_stream : open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) Fail(path, errno);
  const int error = WriteAll(file, bytes) ? 0 : errno;
  const bool closed = path == kStream || close(file) == 0;
  if (error != 0 || !closed) Fail(path, error != 0 ? error : errno);
}

}  // namespace

void KeepStdoutForResults() {
  result_stream = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  dup2(STDERR_FILENO, STDOUT_FILENO);
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void WriteFile(const std::string& path, std::string_view bytes) {
  struct stat status {};
  const bool exists = path != kStream && stat(path.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) Fail(path, EISDIR);
  if (path == kStream || (exists && !S_ISREG(status.st_mode))) return WriteStraight(path, bytes);
  // A file that may not be written is left alone, though its folder would let us replace it.
  if (exists && access(path.c_str(), W_OK) != 0) Fail(path, errno);

  std::error_code error;
  const std::string target = exists ? fs::canonical(path, error).string() : path;
  if (error) Fail(path, error.value());
  TemporaryFile temporary(target);
  if (exists && fchown(temporary.file(), status.st_uid, status.st_gid) != 0 && errno != EPERM) Fail(path, errno);
  if (fchmod(temporary.file(), exists ? status.st_mode & 07777 : CreationMode()) != 0) Fail(path, errno);
  if (!WriteAll(temporary.file(), bytes) || fsync(temporary.file()) != 0) Fail(path, errno);
  temporary.Rename();
  FlushFolder(fs::path(target).parent_path());
}

namespace {

std::string BackUp(const std::string& path) {
  std::error_code error;
  const std::string source = fs::canonical(path, error).string();
  if (error) Fail(path, error.value());
  for (int number = 1;; ++number) {
    std::string name = source + ".bak" + (number == 1 ? "" : std::to_string(number));
    if (link(source.c_str(), name.c_str()) == 0) return name;  // the very file: the new one takes its name away
    if (errno == EEXIST) continue;
    if (fs::exists(name, error)) continue;
    WriteFile(name, ReadBytes(source));  // a file system without links
    return name;
  }
}

}  // namespace

std::string WriteFileWithBackup(const std::string& path, std::string_view bytes) {
  std::string backup = BackUp(path);
  try {
    WriteFile(path, bytes);
  } catch (...) {
    unlink(backup.c_str());
    throw;
  }
  return backup;
}

}  // namespace sok
