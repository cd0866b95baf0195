#include "host/runner/run/exports.h"

#include <elf.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>

#include "host/runner/files/input.h"

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

}  // namespace

std::vector<std::string> ExportedNames(const std::string& path) {
  std::vector<std::string> exported;
  const std::string bytes = ReadBytes(path);
  const auto header = At<Elf64_Ehdr>(bytes, 0);
  if (!header || std::memcmp(header->e_ident, ELFMAG, SELFMAG) != 0 || header->e_ident[EI_CLASS] != ELFCLASS64) {
    return exported;
  }
  for (std::size_t i = 0; i < header->e_shnum; ++i) {
    const auto section = At<Elf64_Shdr>(bytes, header->e_shoff + i * sizeof(Elf64_Shdr));
    if (!section || section->sh_type != SHT_DYNSYM) continue;
    const auto names = At<Elf64_Shdr>(bytes, header->e_shoff + section->sh_link * sizeof(Elf64_Shdr));
    if (!names) continue;
    for (std::size_t offset = 0; offset + sizeof(Elf64_Sym) <= section->sh_size; offset += sizeof(Elf64_Sym)) {
      const auto symbol = At<Elf64_Sym>(bytes, section->sh_offset + offset);
      if (symbol && IsExported(*symbol)) exported.push_back(NameAt(bytes, *names, symbol->st_name));
    }
  }
  std::sort(exported.begin(), exported.end());
  return exported;
}

}  // namespace sok
