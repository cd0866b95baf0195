#include "platform/bundle.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/executable.h"
#include "platform/file_system.h"
#include "platform/languages.h"
#include "platform/property_list.h"

namespace sok {
namespace {

// Where a bundle keeps its information and its executable: in Contents, else in its own folder. A Contents folder
// taken for a bundle has neither: what it holds is the outer bundle's.
std::string ContentsOf(const std::string& path) {
  return IsDirectory(path + "/Contents") ? path + "/Contents/" : path + "/";
}

bool IsInsideOfBundle(const std::string& path) { return NameOf(path) == "Contents"; }

std::string ResourcesOf(const std::string& path, const std::string& contents) {
  const bool has_folder = !IsInsideOfBundle(path) && IsDirectory(contents + "Resources");
  return has_folder ? contents + "Resources/" : contents;
}

// The first file of a folder that has a name before an ending, or an empty text.
std::string FirstWithEnding(const std::string& folder, const std::string& ending) {
  for (const std::string& candidate : ListFolder(folder)) {
    if (candidate.size() > ending.size() && candidate.ends_with(ending)) return candidate;
  }
  return {};
}

Ref<const Dictionary> ReadInformation(const std::string& path, const std::string& contents) {
  return IsInsideOfBundle(path) ? Ref<const Dictionary>() : ReadPropertyList(contents + "Info.plist");
}

const Object* Find(const Ref<const Dictionary>& dictionary, std::u16string_view key) {
  return dictionary ? dictionary->Find(key) : nullptr;
}

std::vector<unsigned> ParseVersion(const Object* value) {
  std::vector<unsigned> numbers;
  if (value == nullptr) return numbers;
  bool in_number = false;
  for (const char16_t unit : value->Description()) {
    const bool is_digit = unit >= u'0' && unit <= u'9';
    if (is_digit && !in_number) numbers.push_back(0);
    if (is_digit) numbers.back() = numbers.back() * 10 + (unit - u'0');
    if (!is_digit && unit != u'.') break;
    in_number = is_digit;
  }
  return numbers;
}

}  // namespace
}  // namespace sok

__CFBundle::__CFBundle(std::string folder, bool is_main)
    : Object(kKind),
      path_(std::move(folder)),
      contents_(sok::ContentsOf(path_)),
      resources_(sok::ResourcesOf(path_, contents_)),
      information_(sok::ReadInformation(path_, contents_)),
      version_(sok::ParseVersion(sok::Find(information_, u"CFBundleVersion"))),
      executable_(is_main ? sok::ProgramPath() : FindExecutable()),
      is_loaded_(is_main) {}

CFStringRef __CFBundle::identifier() const {
  return sok::As<sok::String>(sok::Find(information_, u"CFBundleIdentifier"));
}

std::string __CFBundle::FindExecutable() const {
  const auto* named = sok::As<sok::String>(sok::Find(information_, u"CFBundleExecutable"));
  std::string name = named != nullptr ? sok::ToUtf8(named->units()) : std::string();
  if (name.empty()) {
    name = sok::NameOf(path_);
    name.resize(std::min(name.rfind('.'), name.size()));
  }
  if (name.empty()) return {};
  for (const std::string& folder : {contents_ + "MacOS/", contents_, path_ + "/"}) {
    if (sok::IsFile(folder + name)) return sok::RealPath(folder + name);
  }
  return {};
}

void* __CFBundle::Load() {
  void* image = image_.load(std::memory_order_acquire);
  if (image != nullptr || executable_.empty()) return image;
  // No lock is held here, because loading runs the image's own initialisers, which may ask for bundles.
  void* const loaded = sok::LoadImage(executable_);
  if (loaded == nullptr) return nullptr;
  NoteLoaded();
  if (!image_.compare_exchange_strong(image, loaded, std::memory_order_acq_rel)) {
    sok::UnloadImage(loaded);  // another thread was first; its reference holds the image
    return image;
  }
  return loaded;
}

const sok::Object* __CFBundle::Information(std::u16string_view key) {
  const sok::Dictionary* localized = Table("InfoPlist");
  const sok::Object* value = localized != nullptr ? localized->Find(key) : nullptr;
  return value != nullptr ? value : sok::Find(information_, key);
}

// Resources itself, then the folders of the languages chosen.
std::vector<std::string> __CFBundle::ResourceFolders(const std::string& subfolder) {
  const std::lock_guard lock(mutex_);
  if (!languages_) {
    constexpr std::string_view kExtension = ".lproj";
    std::vector<std::string> available;
    for (const std::string& name : sok::ListFolder(resources_)) {
      if (name.ends_with(kExtension)) available.push_back(name.substr(0, name.size() - kExtension.size()));
    }
    const auto* region = sok::As<sok::String>(sok::Find(information_, u"CFBundleDevelopmentRegion"));
    languages_ = sok::ChooseLanguages(sok::PreferredLanguages(), available,
                                      region != nullptr ? sok::ToUtf8(region->units()) : std::string());
  }
  const std::string inside = subfolder.empty() ? std::string() : subfolder + "/";
  std::vector<std::string> folders = {resources_ + inside};
  for (const std::string& language : *languages_) {
    folders.push_back(std::string(resources_).append(language).append(".lproj/").append(inside));
  }
  return folders;
}

std::string __CFBundle::FindResource(const std::optional<std::string>& name, const std::string& extension,
                                     const std::string& subfolder) {
  const std::string ending = extension.empty() || extension[0] == '.' ? extension : "." + extension;
  const std::string file = name.value_or("") + ending;
  if (file.empty() || ("/" + subfolder + "/" + file + "/").find("/../") != std::string::npos) return {};
  for (const std::string& folder : ResourceFolders(subfolder)) {
    const std::string found = !name ? sok::FirstWithEnding(folder, ending) : sok::Exists(folder + file) ? file : "";
    if (!found.empty()) return folder + found;
  }
  return {};
}

const sok::Dictionary* __CFBundle::Table(const std::string& name) {
  {
    const std::lock_guard lock(mutex_);
    const auto known = tables_.find(name);
    if (known != tables_.end()) return known->second.get();
  }
  const std::string path = FindResource(name, "strings", "");
  sok::Ref<const sok::Dictionary> table =
      path.empty() ? sok::Ref<const sok::Dictionary>() : sok::ReadPropertyList(path);
  const std::lock_guard lock(mutex_);
  return tables_.try_emplace(name, std::move(table)).first->second.get();
}
