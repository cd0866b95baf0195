#include "host/musicxml/text/zip_archive.h"

#include <zip.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <pugixml.hpp>
#include <sstream>

#include "host/errors.h"
#include "host/musicxml/limits.h"

namespace sok {
namespace {

constexpr std::size_t kPiece = 65536;
constexpr char kContainer[] = "META-INF/container.xml";

struct DiscardArchive {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct CloseMember {
  void operator()(zip_file_t* file) const { zip_fclose(file); }
};
struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
struct FreeSource {
  void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using Archive = std::unique_ptr<zip_t, DiscardArchive>;
using Source = std::unique_ptr<zip_source_t, FreeSource>;

[[noreturn]] void Fail(const std::string& what, zip_error_t* error) {
  std::string message = what + ": " + zip_error_strerror(error);
  zip_error_fini(error);
  throw Error(message);
}

// `kept` receives the source when it must outlive the archive. Such a source is to be written, and libzip then frees
// the bytes that it shares with what it writes, whoever owns them: it gets bytes of its own.
Archive Open(std::string_view bytes, Source* kept = nullptr) {
  zip_error_t error;
  zip_error_init(&error);
  std::unique_ptr<void, FreeMemory> own(kept != nullptr ? std::malloc(bytes.size()) : nullptr);
  if (own != nullptr) std::memcpy(own.get(), bytes.data(), bytes.size());
  if (kept != nullptr && own == nullptr) throw std::bad_alloc();
  const void* const data = own != nullptr ? own.get() : bytes.data();
  Source source(zip_source_buffer_create(data, bytes.size(), own != nullptr ? 1 : 0, &error));
  if (source == nullptr) Fail("the zip cannot be read", &error);
  static_cast<void>(own.release());  // the source's now
  zip_t* archive = zip_open_from_source(source.get(), 0, &error);
  if (archive == nullptr) Fail("the zip cannot be read", &error);
  zip_error_fini(&error);
  if (kept != nullptr) {
    zip_source_keep(source.get());
    kept->reset(source.release());
  } else {
    static_cast<void>(source.release());  // the archive's now
  }
  Archive result(archive);
  if (zip_get_num_entries(archive, 0) > kMostMembers) throw Error("the zip has too many members");
  return result;
}

zip_stat_t Stat(zip_t* archive, zip_uint64_t index) {
  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_stat_index(archive, index, 0, &stat) != 0) throw Error("the zip is damaged");
  return stat;
}

// Reads in pieces: what a zip of `archive_size` bytes says of its sizes need not be true.
std::string ReadMember(zip_t* archive, std::size_t archive_size, zip_uint64_t index) {
  const zip_stat_t stat = Stat(archive, index);
  const std::string name = stat.name;
  if (stat.encryption_method != ZIP_EM_NONE) throw Error("the member " + name + " is encrypted");
  const std::uint64_t packed = std::min<std::uint64_t>(stat.comp_size, archive_size);
  const std::uint64_t bound = std::min<std::uint64_t>(std::max(kFreeSize, packed * kLargestRatio), kLargestText);
  const auto fail = [&name](const char* reason) { throw Error("the member " + name + reason); };
  if (stat.size > bound) fail(" is too large when unpacked");
  std::unique_ptr<zip_file_t, CloseMember> file(zip_fopen_index(archive, index, 0));
  if (file == nullptr) fail(" cannot be unpacked");
  std::string bytes;
  for (std::size_t size = 0;;) {
    // One byte more than the zip says, to see the end and have the checksum compared.
    if (size == bytes.size()) bytes.resize(std::min<std::uint64_t>(std::max(kPiece, 2 * size), stat.size + 1));
    const zip_int64_t count = zip_fread(file.get(), bytes.data() + size, bytes.size() - size);
    if (count < 0) fail(" is damaged");
    size += static_cast<std::size_t>(count);
    if (size > stat.size) fail(" is longer than the zip says");
    if (count == 0) {
      bytes.resize(size);
      return bytes;
    }
  }
}

std::string FindScore(zip_t* archive, std::size_t archive_size) {
  const zip_int64_t container = zip_name_locate(archive, kContainer, 0);
  if (container >= 0) {
    const std::string text = ReadMember(archive, archive_size, static_cast<zip_uint64_t>(container));
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size())) {
      throw Error(std::string(kContainer) + " in the zip is not XML");
    }
    const pugi::xml_node root_file = document.child("container").child("rootfiles").child("rootfile");
    std::string path = root_file.attribute("full-path").value();
    if (path.empty()) throw Error(std::string(kContainer) + " names no score");
    return path;
  }
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
    std::string name = Stat(archive, static_cast<zip_uint64_t>(i)).name;
    if (!name.starts_with("META-INF/") && (name.ends_with(".xml") || name.ends_with(".musicxml"))) return name;
  }
  throw Error("the zip holds no score");
}

zip_uint64_t Locate(zip_t* archive, const std::string& name) {
  const zip_int64_t index = zip_name_locate(archive, name.c_str(), 0);
  if (index < 0) throw Error("the zip holds no member " + name);
  return static_cast<zip_uint64_t>(index);
}

// The bytes of an archive that was closed.
std::string Written(zip_source_t* source) {
  zip_stat_t whole;
  zip_stat_init(&whole);
  if (zip_source_stat(source, &whole) != 0 || zip_source_open(source) != 0) {
    throw Error("the zip cannot be written");
  }
  std::string bytes(whole.size, '\0');
  const zip_int64_t size = zip_source_read(source, bytes.data(), bytes.size());
  zip_source_close(source);
  if (size != static_cast<zip_int64_t>(bytes.size())) throw Error("the zip cannot be written");
  return bytes;
}

void AddMember(zip_t* archive, const std::string& name, std::string_view bytes) {
  constexpr std::time_t kNoTime = 315619200;  // 1980-01-02, in every time zone a time that zips can say
  zip_source_t* const source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
  const zip_int64_t index = source == nullptr ? -1 : zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8);
  if (index < 0) {
    zip_source_free(source);
    throw Error("the zip cannot be written");
  }
  zip_file_set_mtime(archive, static_cast<zip_uint64_t>(index), kNoTime, 0);
}

// The new archive must differ in nothing but the score.
void CheckArchive(std::string_view before, std::string_view after, const PackedScore& score) {
  const Archive old_archive = Open(before);
  const Archive new_archive = Open(after);
  const zip_int64_t count = zip_get_num_entries(old_archive.get(), 0);
  bool same = count == zip_get_num_entries(new_archive.get(), 0);
  for (zip_int64_t i = 0; same && i < count; ++i) {
    const auto index = static_cast<zip_uint64_t>(i);
    const zip_stat_t was = Stat(old_archive.get(), index);
    const zip_stat_t is = Stat(new_archive.get(), index);
    same = std::string_view(was.name) == is.name && was.comp_method == is.comp_method;
    if (!same) break;
    if (score.member == is.name) {
      same = ReadMember(new_archive.get(), after.size(), index) == score.bytes;
    } else {
      same = was.size == is.size && was.crc == is.crc && was.comp_size == is.comp_size;
    }
  }
  if (!same) throw Error("the new zip does not hold what it should; nothing is written");
}

PackedScore Unpack(std::string_view bytes) {
  const Archive archive = Open(bytes);
  PackedScore score;
  score.member = FindScore(archive.get(), bytes.size());
  score.bytes = ReadMember(archive.get(), bytes.size(), Locate(archive.get(), score.member));
  return score;
}

std::string Repack(std::string_view bytes, const PackedScore& score) {
  Source kept;
  Archive archive = Open(bytes, &kept);
  const zip_uint64_t index = Locate(archive.get(), score.member);
  const zip_stat_t stat = Stat(archive.get(), index);
  zip_source_t* member = zip_source_buffer(archive.get(), score.bytes.data(), score.bytes.size(), 0);
  if (member == nullptr || zip_file_replace(archive.get(), index, member, 0) != 0) {
    if (member != nullptr) zip_source_free(member);
    throw Error("the zip cannot be written");
  }
  if (zip_set_file_compression(archive.get(), index, stat.comp_method, 0) != 0 ||
      zip_file_set_mtime(archive.get(), index, stat.mtime, 0) != 0 || zip_close(archive.get()) != 0) {
    throw Error(std::string("the zip cannot be written: ") + zip_strerror(archive.get()));
  }
  static_cast<void>(archive.release());  // closing it was its end

  std::string result = Written(kept.get());
  CheckArchive(bytes, result, score);
  return result;
}

std::string Pack(const PackedScore& score) {
  zip_error_t error;
  zip_error_init(&error);
  const Source source(zip_source_buffer_create(nullptr, 0, 0, &error));
  if (source == nullptr) Fail("the zip cannot be written", &error);
  Archive archive(zip_open_from_source(source.get(), ZIP_CREATE | ZIP_TRUNCATE, &error));
  if (archive == nullptr) Fail("the zip cannot be written", &error);
  zip_source_keep(source.get());

  pugi::xml_document container;
  container.append_child("container").append_child("rootfiles").append_child("rootfile").append_attribute("full-path") =
      score.member.c_str();
  std::ostringstream container_text;
  container.save(container_text);
  const std::string container_bytes = container_text.str();
  AddMember(archive.get(), kContainer, container_bytes);
  AddMember(archive.get(), score.member, score.bytes);
  if (zip_close(archive.get()) != 0) {
    throw Error(std::string("the zip cannot be written: ") + zip_strerror(archive.get()));
  }
  static_cast<void>(archive.release());  // closing it was its end
  return Written(source.get());
}

}  // namespace
}  // namespace sok

extern "C" __attribute__((visibility("default"))) const sok::ZipFunctions* SokZipFunctions() {
  static constexpr sok::ZipFunctions kFunctions = {sok::Unpack, sok::Repack, sok::Pack};
  return &kFunctions;
}
