// Any bytes as a bundle's Info.plist and as its tables of strings: every text of a sound table is found again.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/bundle.h"
#include "platform/encoding.h"
#include "platform/property_list.h"

namespace {

std::string MakeFolder() {
  std::string folder = std::filesystem::temp_directory_path() / "sok_fuzz_XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) std::abort();
  std::filesystem::create_directories(folder + "/Contents/Resources/en.lproj");
  return folder;
}

void Write(const std::string& path, const uint8_t* data, std::size_t size) {
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr || std::fwrite(data, 1, size, file) != size) std::abort();
  std::fclose(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const std::string folder = MakeFolder();
  static const int registered = std::atexit([] { std::filesystem::remove_all(folder); });
  if (registered != 0) std::abort();
  Write(folder + "/Contents/Info.plist", data, size);
  Write(folder + "/Contents/Resources/en.lproj/InfoPlist.strings", data, size);

  const auto bundle = sok::Make<sok::Bundle>(folder, false);
  const auto list = sok::ParsePropertyList({reinterpret_cast<const char*>(data), size});
  const sok::Dictionary* const table = bundle->Table("InfoPlist");
  if ((table != nullptr) != static_cast<bool>(list)) std::abort();
  if (!list) return 0;
  for (const auto& [key, value] : list->entries) {
    for (const sok::Object* found : {table->Find(key), bundle->Information(key)}) {
      if (found == nullptr || found->Description() != value->Description()) std::abort();
    }
  }
  const auto* const identifier = sok::As<sok::String>(list->Find(u"CFBundleIdentifier"));
  if (sok::View(bundle->identifier()) != sok::View(identifier)) std::abort();
  return 0;
}
