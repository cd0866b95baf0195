#include "platform/executable.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <exception>
#include <memory>

#include "platform/file_system.h"

namespace sok {
namespace {

struct ImageList {
  std::vector<std::string> names;
  bool complete = true;
};

// A name of the loader's, read without anything that ThreadSanitizer watches: it sees the loader write the name on one
// thread and not the loader's own lock, under which the name is read on another. No lock around loading could tell it
// so: images are loaded by others, too, and their initialisers may ask for bundles, from threads of theirs.
__attribute__((no_sanitize("thread"))) std::string Copy(const volatile char* name) {
  std::string copy;
  while (*name != 0) copy.push_back(*name++);
  return copy;
}

// Runs under the loader's lock, called from C: only takes the name down.
int TakeName(dl_phdr_info* info, std::size_t, void* data) {
  auto& list = *static_cast<ImageList*>(data);
  try {
    list.names.push_back(Copy(info->dlpi_name));
    return 0;
  } catch (const std::exception&) {
    list.complete = false;
    return 1;
  }
}

}  // namespace

std::string ProgramPath() { return RealPath("/proc/self/exe"); }

std::vector<std::string> LoadedImages() {
  ImageList list;
  dl_iterate_phdr(&TakeName, &list);
  if (!list.complete) throw std::bad_alloc();
  std::vector<std::string> paths = {ProgramPath()};
  for (const std::string& name : list.names) {
    if (name.find('/') == name.npos) continue;  // the program, or what has no file
    if (std::string path = RealPath(name); !path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

void* LoadImage(const std::string& path) {
  return dlopen(path == ProgramPath() ? nullptr : path.c_str(), RTLD_LAZY | RTLD_LOCAL);
}

void* FindSymbol(void* image, const char* name) {
  void* const address = dlsym(image, name);
  const link_map* wanted = nullptr;
  void* owner = nullptr;
  Dl_info info;
  if (address == nullptr || dlinfo(image, RTLD_DI_LINKMAP, &wanted) != 0 ||
      dladdr1(address, &info, &owner, RTLD_DL_LINKMAP) == 0) {
    return nullptr;
  }
  return owner == wanted ? address : nullptr;
}

void UnloadImage(void* image) { dlclose(image); }

}  // namespace sok
