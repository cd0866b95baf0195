// Strings and temporary bundles for the platform's tests.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct Releaser {
  void operator()(const void* object) const { CFRelease(object); }
};
template <typename T>
using Owned = std::unique_ptr<std::remove_pointer_t<T>, Releaser>;
using OwnedString = Owned<CFStringRef>;

inline OwnedString String(std::u16string_view text) {
  const std::vector<UniChar> units(text.begin(), text.end());
  return OwnedString(CFStringCreateWithCharacters(nullptr, units.data(), static_cast<CFIndex>(units.size())));
}

inline std::u16string Units(CFStringRef string) {
  const CFIndex length = CFStringGetLength(string);
  std::vector<UniChar> units(static_cast<std::size_t>(length));
  CFStringGetCharacters(string, CFRangeMake(0, length), units.data());
  return {units.begin(), units.end()};
}

// ASCII for messages that can be read, other units as {decimal}; "(null)" for null.
inline std::string Ascii(CFStringRef string) {
  if (string == nullptr) return "(null)";
  std::string text;
  for (const char16_t unit : Units(string)) {
    text += unit < 0x80 ? std::string(1, static_cast<char>(unit)) : "{" + std::to_string(unit) + "}";
  }
  return text;
}

// What %@ prints of a value.
inline std::string Description(CFTypeRef value) {
  return Ascii(OwnedString(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%@"), value)).get());
}

// A folder of the test's own, gone with it.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "platform-XXXXXX").string();
    path_ = std::filesystem::canonical(mkdtemp(name.data()));
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string operator/(std::string_view name) const { return (path_ / name).string(); }

  // Writes a file, folders made as needed.
  const Folder& Write(std::string_view name, std::string_view content) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << content;
    return *this;
  }

 private:
  std::filesystem::path path_;
};

inline Owned<CFURLRef> Url(std::string_view path) {
  return Owned<CFURLRef>(CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(path.data()),
                                                                 static_cast<CFIndex>(path.size()), true));
}

inline Owned<CFBundleRef> Bundle(std::string_view path) {
  return Owned<CFBundleRef>(CFBundleCreate(nullptr, Url(path).get()));
}

inline std::string Path(CFURLRef url) {
  UInt8 buffer[4096];
  if (url == nullptr || !CFURLGetFileSystemRepresentation(url, true, buffer, sizeof buffer)) return "(null)";
  return reinterpret_cast<const char*>(buffer);
}

// An old-style information dictionary of an executable key and an identifier.
inline std::string Information(std::string_view executable, std::string_view identifier, std::string_view more = "") {
  return "{ CFBundleExecutable = \"" + std::string(executable) + "\"; CFBundleIdentifier = \"" +
         std::string(identifier) + "\"; " + std::string(more) + " }";
}
