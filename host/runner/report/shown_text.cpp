#include "host/runner/report/shown_text.h"

#include <algorithm>
#include <bit>
#include <cstdio>

namespace sok {
namespace {

struct Character {
  char32_t code = 0;
  std::size_t bytes = 0;  // 0: the text is no UTF-8 here
};

// A character that is there, in no more bytes than it needs.
bool IsSpelt(char32_t code, std::size_t length) {
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};  // by length
  return code >= kLeast[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

Character CharacterAt(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  const auto length = static_cast<std::size_t>(std::countl_one(first));
  if (length == 0) return {first, 1};
  if (length == 1 || length > 4 || length > text.size()) return {};
  char32_t code = first & (0x7Fu >> length);
  for (const char next : text.substr(1, length - 1)) {
    if ((next & 0xC0) != 0x80) return {};
    code = code << 6 | static_cast<char32_t>(next & 0x3F);
  }
  return IsSpelt(code, length) ? Character{code, length} : Character{};
}

bool IsControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

// Line and paragraph separator, overrides of direction.
bool IsLayout(char32_t code) { return (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069); }

std::string Hexadecimal(const char* form, char32_t code) {
  char text[16];
  std::snprintf(text, sizeof text, form, static_cast<unsigned int>(code));
  return text;
}

std::string Shown(char32_t code) {
  constexpr std::string_view kNamed = "\n\r\t";
  const auto named = code < 0x80 ? kNamed.find(static_cast<char>(code)) : std::string_view::npos;
  if (named != std::string_view::npos) return {'\\', "nrt"[named]};
  return Hexadecimal(IsControl(code) ? "\\x%02x" : "\\u%04x", code);
}

// Copies the text, save for what `replace` answers a text for.
template <typename Replace>
std::string Replaced(std::string_view text, Replace&& replace) {
  std::string result;
  while (!text.empty()) {
    const auto plain = std::ranges::find_if(text, [](char c) { return c < ' ' || c > '~'; }) - text.begin();
    result += text.substr(0, static_cast<std::size_t>(plain));
    text.remove_prefix(static_cast<std::size_t>(plain));
    if (text.empty()) break;
    const Character next = CharacterAt(text);
    const std::size_t length = std::max<std::size_t>(next.bytes, 1);
    const std::string other = replace(next, text);
    result += other.empty() ? text.substr(0, length) : std::string_view(other);
    text.remove_prefix(length);
  }
  return result;
}

std::string Shown(std::string_view text, bool lines) {
  return Replaced(text, [lines](const Character& next, std::string_view rest) -> std::string {
    if (next.bytes == 0) return Hexadecimal("\\x%02x", static_cast<unsigned char>(rest[0]));
    if (lines && (next.code == '\n' || next.code == '\t')) return {};
    return IsControl(next.code) || IsLayout(next.code) ? Shown(next.code) : std::string();
  });
}

}  // namespace

std::string ShownText(std::string_view text) { return Shown(text, false); }
std::string ShownLines(std::string_view text) { return Shown(text, true); }

std::string ShownJson(std::string_view json) {
  return Replaced(json, [](const Character& next, std::string_view) -> std::string {
    const bool hidden = next.code >= 0x7F && (IsControl(next.code) || IsLayout(next.code));
    return hidden ? Hexadecimal("\\u%04x", next.code) : std::string();
  });
}

}  // namespace sok
