#include "platform/bundle_registry.h"

#include <algorithm>
#include <memory>
#include <tuple>

#include "platform/executable.h"
#include "platform/file_system.h"

namespace sok {
namespace {

// The folder of the bundle that an image in Contents/<folder>/... belongs to, the innermost one; empty when none.
std::string BundleAround(const std::string& image) {
  const std::size_t contents = image.rfind("/Contents/");
  return contents != image.npos && contents > 0 ? image.substr(0, contents) : std::string();
}

std::string MainFolder(const std::string& program) {
  const std::string folder = ParentOf(program);
  return folder.ends_with("/Contents/MacOS") ? ParentOf(ParentOf(folder)) : folder;
}

class Registry {
 public:
  // Lives to the very end of the process, as do the bundles.
  static Registry& Get() {
    static Registry& registry = *new Registry;
    return registry;
  }

  Bundle* At(const std::string& path) {
    const std::string folder = RealPath(path);
    if (!IsDirectory(folder)) return nullptr;
    const std::lock_guard lock(mutex_);
    for (const Ref<Bundle>& bundle : bundles_) {
      if (bundle->path() == folder) return bundle.get();
    }
    bundles_.push_back(Make<Bundle>(folder, folder == main_folder_));
    return bundles_.back().get();
  }

  Bundle* Main() { return At(main_folder_); }

  Bundle* WithIdentifier(std::u16string_view identifier) {
    const std::vector<std::string> images = LoadedImages();
    for (const std::string& image : images) {
      if (const std::string folder = BundleAround(image); !folder.empty()) At(folder);
    }
    const std::lock_guard lock(mutex_);
    Bundle* best = nullptr;
    const auto rank = [](const Bundle& bundle) { return std::make_tuple(bundle.is_loaded(), bundle.version()); };
    for (const Ref<Bundle>& bundle : bundles_) {
      if (std::find(images.begin(), images.end(), bundle->executable()) != images.end()) bundle->NoteLoaded();
      if (bundle->identifier() == nullptr || View(bundle->identifier()) != identifier) continue;
      if (best == nullptr || rank(*best) <= rank(*bundle)) best = bundle.get();
    }
    return best;
  }

 private:
  const std::string main_folder_ = MainFolder(ProgramPath());
  std::mutex mutex_;
  std::vector<Ref<Bundle>> bundles_;  // in the order of their making
};

}  // namespace

Bundle* BundleAt(const std::string& path) { return Registry::Get().At(path); }
Bundle* MainBundle() { return Registry::Get().Main(); }
Bundle* BundleWithIdentifier(std::u16string_view identifier) { return Registry::Get().WithIdentifier(identifier); }

}  // namespace sok
