// A bundle: its folder, its information dictionary, its executable and its tables of strings.
//
// What a bundle holds in the files of its information dictionary is read when the bundle is made and never changes;
// the rest is read when first asked for. Everything may be used from any thread.
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/value.h"

struct __CFBundle final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kBundle;

  // `folder` is an absolute path, links resolved. The main bundle's executable is the running program.
  __CFBundle(std::string folder, bool is_main);

  const std::string& path() const { return path_; }
  CFStringRef identifier() const;
  // CFBundleVersion as numbers.
  const std::vector<unsigned>& version() const { return version_; }
  // The executable's file; empty when there is none.
  const std::string& executable() const { return executable_; }

  bool is_loaded() const { return is_loaded_.load(std::memory_order_acquire); }
  void NoteLoaded() { is_loaded_.store(true, std::memory_order_release); }
  // The executable's image, loaded when it is not yet; null when it cannot be.
  void* Load();

  // A value of the information dictionary: localised, else plain. Borrowed; null when there is none.
  const sok::Object* Information(std::u16string_view key);
  // A file or folder among the resources; empty when there is none. Without a name: the first one with the extension.
  std::string FindResource(const std::optional<std::string>& name, const std::string& extension,
                           const std::string& subfolder);
  // A table of strings, read once. Null when there is none or it is broken.
  const sok::Dictionary* Table(const std::string& name);

 private:
  std::string FindExecutable() const;
  std::vector<std::string> ResourceFolders(const std::string& subfolder);

  const std::string path_;
  const std::string contents_;  // with a slash at the end, as the next
  const std::string resources_;
  const sok::Ref<const sok::Dictionary> information_;  // null when there is none or it is broken
  const std::vector<unsigned> version_;
  const std::string executable_;

  std::atomic<bool> is_loaded_;
  std::atomic<void*> image_ = nullptr;

  std::mutex mutex_;  // guards what follows
  std::optional<std::vector<std::string>> languages_;
  std::map<std::string, sok::Ref<const sok::Dictionary>> tables_;
};

namespace sok {
using Bundle = ::__CFBundle;
}
