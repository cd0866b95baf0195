#include "platform/url.h"

#include <cstring>
#include <filesystem>
#include <string_view>

#include "platform/string_object.h"

namespace {

std::string WithoutEndingSlashes(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace

__CFURL::__CFURL(std::string absolute_path, bool names_directory)
    : Object(kKind), path(WithoutEndingSlashes(std::move(absolute_path))), is_directory(names_directory) {}

std::u16string __CFURL::Description() const {
  constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!$&'()*+,-./:=@_~";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "file://";
  for (const char byte : path) {
    if (kPlain.find(byte) != kPlain.npos) {
      text += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      text += {'%', kDigits[value >> 4], kDigits[value & 15]};
    }
  }
  if (is_directory && path != "/") text += '/';
  return sok::Widen(text);
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, const UInt8* path, CFIndex length,
                                                 Boolean isDirectory) {
  if (path == nullptr || length <= 0) return nullptr;
  return sok::OrElse<CFURLRef>(nullptr, [&] {
    const std::string name(path, path + length);
    const std::string absolute = name[0] == '/' ? name : std::filesystem::current_path().string() + "/" + name;
    return new sok::Url(absolute, isDirectory != 0);
  });
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean, UInt8* buffer, CFIndex size) {
  if (url == nullptr || size <= 0 || url->path.size() >= static_cast<std::size_t>(size)) return false;
  std::memcpy(buffer, url->path.c_str(), url->path.size() + 1);
  return true;
}
