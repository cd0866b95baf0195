#include "host/runner/run/exports.h"

#include <elf.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <functional>
#include <optional>

#include "host/runner/files/input.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

// A record of the file, when the file is long enough.
template <typename Record>
std::optional<Record> At(const std::string& bytes, std::size_t offset) {
  Record record;
  if (offset > bytes.size() || bytes.size() - offset < sizeof record) return std::nullopt;
  std::memcpy(&record, bytes.data() + offset, sizeof record);
  return record;
}

std::string NameAt(const std::string& bytes, const Elf64_Shdr& names, std::size_t offset) {
  const std::size_t start = names.sh_offset + offset;
  if (start >= bytes.size()) return {};
  return bytes.substr(start, bytes.find('\0', start) - start);
}

bool IsExported(const Elf64_Sym& symbol) {
  const int binding = ELF64_ST_BIND(symbol.st_info), visibility = ELF64_ST_VISIBILITY(symbol.st_other);
  return symbol.st_shndx != SHN_UNDEF && (binding == STB_GLOBAL || binding == STB_WEAK) &&
         (visibility == STV_DEFAULT || visibility == STV_PROTECTED);
}

// Calls `visit` with each section of a kind and the section that has its names.
void ForEachSection(const std::string& bytes, Elf64_Word kind,
                    const std::function<void(const Elf64_Shdr& section, const Elf64_Shdr& names)>& visit) {
  const auto header = At<Elf64_Ehdr>(bytes, 0);
  if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64) return;
  for (std::size_t i = 0; i < header->e_shnum; ++i) {
    const auto section = At<Elf64_Shdr>(bytes, header->e_shoff + i * sizeof(Elf64_Shdr));
    if (!section || section->sh_type != kind) continue;
    const auto names = At<Elf64_Shdr>(bytes, header->e_shoff + section->sh_link * sizeof(Elf64_Shdr));
    if (names) visit(*section, *names);
  }
}

// Calls `visit` with each record of a section.
template <typename Record, typename Visit>
void ForEachRecord(const std::string& bytes, const Elf64_Shdr& section, Visit visit) {
  for (std::size_t offset = 0; offset + sizeof(Record) <= section.sh_size; offset += sizeof(Record)) {
    if (const auto record = At<Record>(bytes, section.sh_offset + offset)) visit(*record);
  }
}

std::string Located(const std::string& library, const std::string& folders) {
  for (const std::string_view folder : Split(folders, ':')) {
    std::string path = std::string(folder) + "/" + library;
    if (std::error_code none; !folder.empty() && std::filesystem::exists(path, none)) return path;
  }
  return library;
}

}  // namespace

std::vector<std::string> ExportedNames(const std::string& path) {
  std::vector<std::string> exported;
  const std::string bytes = ReadBytes(path);
  ForEachSection(bytes, SHT_DYNSYM, [&](const Elf64_Shdr& section, const Elf64_Shdr& names) {
    ForEachRecord<Elf64_Sym>(bytes, section, [&](const Elf64_Sym& symbol) {
      if (IsExported(symbol)) exported.push_back(NameAt(bytes, names, symbol.st_name));
    });
  });
  std::sort(exported.begin(), exported.end());
  return exported;
}

std::vector<std::string> NeededLibraries(const std::string& path) {
  std::vector<std::string> needed;
  std::string folders;
  const std::string bytes = ReadBytes(path);
  ForEachSection(bytes, SHT_DYNAMIC, [&](const Elf64_Shdr& section, const Elf64_Shdr& names) {
    ForEachRecord<Elf64_Dyn>(bytes, section, [&](const Elf64_Dyn& entry) {
      const std::string name = NameAt(bytes, names, entry.d_un.d_val);
      if (entry.d_tag == DT_NEEDED) needed.push_back(name);
      if (entry.d_tag == DT_RUNPATH || entry.d_tag == DT_RPATH) folders = name;
    });
  });
  for (std::string& library : needed) library = Located(library, folders);
  return needed;
}

}  // namespace sok
