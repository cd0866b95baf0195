#include "platform/property_list.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <optional>

#include "platform/SokPlatform.h"
#include "platform/encoding.h"
#include "platform/file_system.h"
#include "platform/property_list_text.h"

namespace sok {
namespace {

struct ByteOrderMark {
  std::string_view bytes;
  CFStringEncoding encoding;
};

using namespace std::string_view_literals;

// The 32-bit marks first: one of them begins like a 16-bit one.
constexpr ByteOrderMark kMarks[] = {
    {"\xFF\xFE\0\0"sv, kCFStringEncodingUTF32LE},
    {"\0\0\xFE\xFF"sv, kCFStringEncodingUTF32BE},
    {"\xFF\xFE"sv, kCFStringEncodingUTF16LE},
    {"\xFE\xFF"sv, kCFStringEncodingUTF16BE},
};

std::optional<std::u16string> DecodeList(std::string_view bytes) {
  for (const ByteOrderMark& mark : kMarks) {
    if (bytes.starts_with(mark.bytes)) return Decode(bytes, mark.encoding);
  }
  return Decode(bytes, kCFStringEncodingUTF8);
}

bool LooksLikeXml(std::u16string_view text) {
  const std::size_t start = text.find_first_not_of(u" \t\r\n");
  return start != text.npos && text[start] == u'<';
}

}  // namespace

Ref<const Dictionary> ParsePropertyList(std::string_view bytes, int* line) {
  const std::optional<std::u16string> text = DecodeList(bytes);
  if (line != nullptr) *line = 1;
  if (!text) return {};
  std::size_t place = 0;
  Value list = LooksLikeXml(*text) ? ParseXmlList(*text, place) : ParseOldStyleList(*text, place);
  if (line != nullptr) {
    *line += static_cast<int>(std::count(text->begin(), text->begin() + static_cast<std::ptrdiff_t>(place), u'\n'));
  }
  if (As<Dictionary>(list.get()) == nullptr) return {};
  return Ref<const Dictionary>::Adopt(static_cast<const Dictionary*>(list.Detach()));
}

Ref<const Dictionary> ReadPropertyList(const std::string& path, int* line) {
  if (line != nullptr) *line = 0;
  if (!IsFile(path)) return {};  // reading a pipe might never end
  errno = 0;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (file == nullptr && errno == ENOMEM) RunOutOfMemory();
  if (file == nullptr) return {};
  std::string bytes;
  std::array<char, 16384> block;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
    bytes.append(block.data(), count);
  }
  if (std::ferror(file.get()) != 0) return {};
  return ParsePropertyList(bytes, line);
}

}  // namespace sok

int SokPlatformReadTexts(const char* path, void (*each)(void* context, const char* key, const char* text),
                         void* context) {
  int line = 0;
  const sok::Ref<const sok::Dictionary> list = sok::ReadPropertyList(path, &line);
  if (!list) return line > 0 ? line : -1;
  for (const auto& [key, value] : list->entries) {
    const auto* const text = sok::As<sok::String>(value.get());
    if (text != nullptr) each(context, sok::ToUtf8(key).c_str(), sok::ToUtf8(text->units()).c_str());
  }
  return 0;
}
