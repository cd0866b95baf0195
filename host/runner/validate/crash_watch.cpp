#include "host/runner/validate/crash_watch.h"

#include <dlfcn.h>

#include <csignal>
#include <string>
#include <string_view>

namespace sok {
namespace {

const HostWatch* crash_watch = nullptr;

void TellOfFreedFrame(int signal, siginfo_t* info, void*) {
  std::signal(signal, SIG_DFL);  // the access is made again
  const std::string frame = crash_watch != nullptr ? crash_watch->FreedFrameAt(info->si_addr) : std::string();
  if (!frame.empty()) crash_watch->Say("uses the frame of " + frame + ", which it has freed");
}

// The address sanitizer's report, of which the line that sums it up is kept.
void TellOfMemoryFault(const char* report) {
  const std::string_view text = report;
  const std::size_t start = text.find("SUMMARY: ");
  if (crash_watch == nullptr || start == std::string_view::npos) return;
  crash_watch->Say(std::string(text.substr(start, text.find('\n', start) - start)));
}

}  // namespace

CrashWatch::CrashWatch(const HostWatch& watch) { crash_watch = &watch; }
CrashWatch::~CrashWatch() { crash_watch = nullptr; }

void TellOfCrashes(bool frames_guarded) {
  using SetCallback = void (*)(void (*)(const char*));
  const auto set = reinterpret_cast<SetCallback>(dlsym(RTLD_DEFAULT, "__asan_set_error_report_callback"));
  if (set != nullptr) set(TellOfMemoryFault);
  if (!frames_guarded) return;
  struct sigaction action {};
  action.sa_sigaction = TellOfFreedFrame;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGSEGV, &action, nullptr);
  sigaction(SIGBUS, &action, nullptr);
}

}  // namespace sok
