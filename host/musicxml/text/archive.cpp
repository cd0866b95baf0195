#include "host/musicxml/text/archive.h"

#include <dlfcn.h>

#include <filesystem>

#include "host/errors.h"
#include "host/musicxml/text/zip_archive.h"

namespace sok {
namespace {

// libzip brings a library of ciphers, which takes longer to load than most scores take to be filled. So all that needs
// it is a module, in ../lib/sok beside this program like the bundles, and is loaded for the first zip.
const ZipFunctions& Zip() {
  static const ZipFunctions& functions = []() -> const ZipFunctions& {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto path = program.parent_path().parent_path() / "lib" / "sok" / "SokArchive.so";
    void* const module = dlopen(path.c_str(), RTLD_NOW);
    void* const found = module != nullptr ? dlsym(module, "SokZipFunctions") : nullptr;
    if (found == nullptr) throw Error(std::string("zips cannot be read or written: ") + dlerror());
    return *reinterpret_cast<decltype(&SokZipFunctions)>(found)();
  }();
  return functions;
}

}  // namespace

bool IsArchive(std::string_view bytes) { return bytes.starts_with("PK\3\4") || bytes.starts_with("PK\5\6"); }

PackedScore UnpackScore(std::string_view archive) { return Zip().unpack(archive); }

std::string RepackScore(std::string_view archive, const PackedScore& score) { return Zip().repack(archive, score); }

std::string PackScore(const PackedScore& score) { return Zip().pack(score); }

}  // namespace sok
