#include "host/runner/run/memory.h"

#include <unistd.h>

#include <climits>
#include <cstdio>
#include <new>
#include <pugixml.hpp>

#include "host/runner/exit_codes.h"
#include "host/runner/files/output_file.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/run/cleanup.h"

namespace sok {
namespace {

bool in_worker = false;
char work[PATH_MAX + 4] = "";  // with what stands behind it in a message

[[noreturn]] void EndProcess() {
  CleanUp();
  if (in_worker) _exit(kOutOfMemoryStatus);
  for (const char* const text : {"sokrun: ", static_cast<const char*>(work), "not enough memory\n"}) {
    WriteAll(STDERR_FILENO, text);
  }
  _exit(kExitBadInput);
}

}  // namespace

void EndWhenMemoryRunsOut() {
  std::set_new_handler(EndProcess);
  pugi::set_memory_management_functions([](std::size_t size) { return ::operator new(size); },
                                        [](void* block) { ::operator delete(block); });
}

void EndSilentlyWhenMemoryRunsOut() { in_worker = true; }

void NameWork(const std::string& file) { std::snprintf(work, sizeof work, "%s: ", ShownText(file).c_str()); }

}  // namespace sok
