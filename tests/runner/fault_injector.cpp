// Preloaded into sokrun: makes one moment of its run go wrong. The environment variable FAULT says what and when:
//   "9 4"        the process gets signal 9 in the middle of its fourth call that changes files
//   "full 4"     that call fails, as on a full disk
//   "touch 4"    somebody else adds a line to the file TOUCHED just before that call
//   "memory 40"  the fortieth allocation after the start of main() fails; "dry 40": and all that follow
// "(fault)" on stderr tells that the moment was met.
#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

char kind[8];
int fatal_signal = 0;
long calls_left = 0;        // until a call that changes files goes wrong
long allocations_left = 0;  // until one fails
bool started = false;

__attribute__((constructor)) void Start() {
  const char* const fault = getenv("FAULT");
  long moment = 0;
  if (fault == nullptr || std::sscanf(fault, "%7s %ld", kind, &moment) != 2) return;
  fatal_signal = std::atoi(kind);
  const bool allocations = std::strcmp(kind, "memory") == 0 || std::strcmp(kind, "dry") == 0;
  (allocations ? allocations_left : calls_left) = moment;
}

template <typename Function>
Function Real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void Tell() {
  static const auto real = Real<ssize_t (*)(int, const void*, std::size_t)>("write");
  real(STDERR_FILENO, "(fault)\n", 8);
}

// Whether this call fails; a signal comes now.
bool FileFault() {
  if (calls_left == 0 || --calls_left != 0) return false;
  Tell();
  if (kind[0] == 't') {
    std::FILE* const file = std::fopen(getenv("TOUCHED"), "a");
    std::fputs("\n", file);
    std::fclose(file);
    return false;
  }
  if (fatal_signal != 0) raise(fatal_signal);
  errno = ENOSPC;
  return fatal_signal == 0;
}

[[maybe_unused]] bool AllocationFault() {
  if (!started || allocations_left == 0) return false;
  if (--allocations_left != 0) return false;
  if (kind[0] == 'd') allocations_left = 1;
  Tell();
  errno = ENOMEM;
  return true;
}

}  // namespace

#define FILE_CALL(result, name, parameters, arguments)             \
  result name parameters {                                         \
    static const auto real = Real<result(*) parameters>(#name);    \
    return FileFault() ? static_cast<result>(-1) : real arguments; \
  }

extern "C" {
FILE_CALL(int, mkostemp, (char* path, int flags), (path, flags))
FILE_CALL(int, fsync, (int file), (file))
FILE_CALL(int, link, (const char* from, const char* to), (from, to))
FILE_CALL(int, rename, (const char* from, const char* to), (from, to))
FILE_CALL(int, unlink, (const char* path), (path))
FILE_CALL(int, fchmod, (int file, mode_t mode), (file, mode))
FILE_CALL(int, ftruncate, (int file, off_t size), (file, size))

// The half of it is written before it goes wrong, unless it goes on: the signal waits.
ssize_t write(int file, const void* bytes, std::size_t count) {
  static const auto real = Real<ssize_t (*)(int, const void*, std::size_t)>("write");
  sigset_t waiting;
  sigprocmask(SIG_SETMASK, nullptr, &waiting);
  const bool goes_on = kind[0] == 't' || (fatal_signal != 0 && sigismember(&waiting, fatal_signal) == 1);
  if (calls_left == 1 && !goes_on) real(file, bytes, count / 2);
  return FileFault() ? -1 : real(file, bytes, count);
}

int __libc_start_main(int (*main)(int, char**, char**), int count, char** arguments, void (*init)(), void (*fini)(),
                      void (*loader)(), void* stack) {
  static auto* real_main = main;
  const auto begin = [](int inner_count, char** inner_arguments, char** environment) {
    started = true;
    return real_main(inner_count, inner_arguments, environment);
  };
  return Real<decltype(&__libc_start_main)>("__libc_start_main")(begin, count, arguments, init, fini, loader, stack);
}

#ifndef SANITIZED  // sanitizers have an allocator of their own
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* malloc(std::size_t size) { return AllocationFault() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) { return AllocationFault() ? nullptr : __libc_calloc(count, size); }
void* realloc(void* block, std::size_t size) { return AllocationFault() ? nullptr : __libc_realloc(block, size); }
#endif
}
