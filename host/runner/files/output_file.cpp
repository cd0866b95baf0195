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

#include "host/errors.h"
#include "host/runner/files/input.h"
#include "host/runner/files/rights.h"
#include "host/runner/run/cleanup.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const std::string& path, int error) {
  throw Error((path == kStream ? "stdout" : path) + ": cannot be written: " + std::strerror(error));
}

int result_stream = STDOUT_FILENO;

// No signal ends the program as long as this lives.
class SignalsWait {
 public:
  SignalsWait() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsWait() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsWait(const SignalsWait&) = delete;
  SignalsWait& operator=(const SignalsWait&) = delete;

 private:
  sigset_t before_;
};

// An open file, closed with its scope.
class OpenFile {
 public:
  OpenFile(const std::string& path, int flags) : file_(open(path.c_str(), flags | O_CLOEXEC)) {
    if (file_ < 0) Fail(path, errno);
  }
  ~OpenFile() { close(file_); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  operator int() const { return file_; }

 private:
  int file_;
};

// ".song.xml.XXXXXX", without the name where that would be longer than a name can be.
std::string TemporaryName(const fs::path& target) {
  const std::string name = "." + target.filename().string() + ".XXXXXX";
  std::string path = (target.parent_path() / (name.size() <= NAME_MAX ? name : ".sokrun.XXXXXX")).string();
  if (path.size() >= PATH_MAX) Fail(target.string(), ENAMETOOLONG);
  return path;
}

// A new file beside its target that goes away unless it is renamed to it.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& target) : target_(target), name_(TemporaryName(target)) {
    CleanUpOnSignals();
    const SignalsWait between_the_file_and_the_note_of_it;
    file_ = mkostemp(name_.data(), O_CLOEXEC);
    if (file_ < 0) Fail(target, errno);
    NoteUnfinishedFile(name_.c_str());
  }

  ~TemporaryFile() {
    if (file_ >= 0) close(file_);
    if (!goes_) return;
    unlink(name_.c_str());
    ForgetUnfinishedFile(name_.c_str());
  }

  int file() const { return file_; }

  void Write(std::string_view bytes) const {
    if (!WriteAll(file_, bytes) || fsync(file_) != 0) Fail(target_, errno);
  }

  void Rename() {
    const int file = file_;
    file_ = -1;
    if (close(file) != 0 || rename(name_.c_str(), target_.c_str()) != 0) Fail(target_, errno);
    Keep();
  }

  // From now on the file stays whatever happens; or no more.
  const std::string& Keep() {
    ForgetUnfinishedFile(name_.c_str());
    goes_ = false;
    return name_;
  }
  void KeepNoMore() {
    NoteUnfinishedFile(name_.c_str());
    goes_ = true;
  }

 private:
  const std::string& target_;
  std::string name_;
  int file_ = -1;
  bool goes_ = true;
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

void Check(const std::string& path, const std::optional<FileState>& before) {
  if (before && StateOf(path) != before) {
    throw Error(path + ": changed while it was being worked on; it is left as it is now");
  }
}

bool Overwrite(int file, std::string_view bytes) {
  return lseek(file, 0, SEEK_SET) == 0 && WriteAll(file, bytes) &&
         ftruncate(file, static_cast<off_t>(bytes.size())) == 0 && fsync(file) == 0;
}

// What is to be written where, and how.
class Writing {
 public:
  Writing(const std::string& path, const std::optional<FileState>& before) : path_(path), before_(before) {
    straight_ = path == kStream;
    if (straight_) return;
    struct stat status {};
    exists_ = stat(path.c_str(), &status) == 0;
    if (!exists_) CheckNoLink(errno);
    if (!exists_) return;
    if (S_ISDIR(status.st_mode)) Fail(path, EISDIR);
    straight_ = !S_ISREG(status.st_mode);
    if (straight_) return;
    // A file that may not be written is left alone, though its folder would let us replace it.
    if (access(path.c_str(), W_OK) != 0) Fail(path, errno);
    std::error_code canonical;
    path_ = fs::canonical(path, canonical).string();
    if (canonical) Fail(path, canonical.value());
    linked_ = status.st_nlink > 1;
  }

  // The name of the backup, when one is asked for.
  std::string Run(std::string_view bytes, bool backup) {
    if (straight_) {
      WriteStraight(path_, bytes);
      return {};
    }
    try {
      if (linked_ || !Replace(bytes, backup)) WriteOver(bytes, backup);
    } catch (...) {
      if (!backup_.empty()) unlink(backup_.c_str());
      throw;
    }
    return backup_;
  }

 private:
  // A link that leads nowhere, or round, is no place for a new file; `error` says which.
  void CheckNoLink(int error) const {
    struct stat link {};
    if (lstat(path_.c_str(), &link) == 0) Fail(path_, error);
  }

  // False where the new file cannot have the rights of the old one.
  bool Replace(std::string_view bytes, bool backup) {
    TemporaryFile temporary(path_);
    if (exists_) {
      if (!GiveRights(RightsOf(OpenFile(path_, O_RDONLY)), temporary.file())) return false;
    } else if (fchmod(temporary.file(), CreationMode()) != 0) {
      Fail(path_, errno);
    }
    temporary.Write(bytes);
    Check(path_, before_);
    if (backup) backup_ = BackUp();
    temporary.Rename();
    FlushFolder(fs::path(path_).parent_path());
    return true;
  }

  void WriteOver(std::string_view bytes, bool backup) {
    const std::string old = ReadBytes(path_);
    if (backup) backup_ = BackUpCopy(old);
    TemporaryFile copy(path_);
    copy.Write(old);
    FlushFolder(fs::path(path_).parent_path());
    const OpenFile file(path_, O_WRONLY);
    Check(path_, before_);
    const SignalsWait until_it_is_whole;
    const std::string& name = copy.Keep();
    if (!Overwrite(file, bytes)) {
      const int error = errno;
      if (!Overwrite(file, old)) {
        throw Error(path_ + ": writing it failed in the middle; what it held is in " + name + ": " +
                    std::strerror(error));
      }
      copy.KeepNoMore();
      Fail(path_, error);
    }
    copy.KeepNoMore();
  }

  std::string FreeBackupName() const {
    for (int number = 1;; ++number) {
      std::string name = path_ + ".bak" + (number == 1 ? "" : std::to_string(number));
      std::error_code error;
      if (!fs::exists(fs::symlink_status(name, error))) return name;
    }
  }

  // The file itself by another name, since a new one is to take its own.
  std::string BackUp() const {
    for (;;) {
      std::string name = FreeBackupName();
      if (link(path_.c_str(), name.c_str()) == 0) return name;
      if (errno != EEXIST) return BackUpCopy(ReadBytes(path_));  // a file system without links
    }
  }

  std::string BackUpCopy(const std::string& old) const {
    std::string name = FreeBackupName();
    TemporaryFile copy(name);
    if (!GiveRights(RightsOf(OpenFile(path_, O_RDONLY)), copy.file())) fchmod(copy.file(), 0600);
    copy.Write(old);
    copy.Rename();
    return name;
  }

  std::string path_;
  const std::optional<FileState>& before_;
  std::string backup_;
  bool exists_ = false;
  bool straight_ = false;  // no file that could be replaced
  bool linked_ = false;    // has other names
};

}  // namespace

bool FileState::operator==(const FileState& other) const {
  return device == other.device && number == other.number && size == other.size &&
         modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
}

std::optional<FileState> StateOf(const std::string& path) {
  struct stat status {};
  if (path == kStream || stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return FileState{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

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

void WriteFile(const std::string& path, std::string_view bytes, const std::optional<FileState>& before) {
  Writing(path, before).Run(bytes, false);
}

std::string WriteFileWithBackup(const std::string& path, std::string_view bytes,
                                const std::optional<FileState>& before) {
  return Writing(path, before).Run(bytes, true);
}

}  // namespace sok
