// The XML form: dict, array, string, integer, real, true, false, data and date elements, with or without a plist
// element around them. Attributes and the document type are not looked at.

#include <algorithm>
#include <charconv>
#include <locale>
#include <optional>
#include <sstream>

#include "platform/encoding.h"
#include "platform/property_list.h"
#include "platform/property_list_text.h"

namespace sok {
namespace {

constexpr std::u16string_view kBlanks = u" \t\r\n";

struct Entity {
  std::u16string_view name;
  char16_t unit;
};

constexpr Entity kEntities[] = {{u"lt", u'<'}, {u"gt", u'>'}, {u"amp", u'&'}, {u"apos", u'\''}, {u"quot", u'"'}};

struct Tag {
  std::u16string_view name;
  bool is_end = false;    // </name>
  bool is_empty = false;  // <name/>
};

std::u16string_view Trimmed(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

template <typename T>
std::optional<T> ParseNumber(std::string_view text, int base) {
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

std::optional<std::int64_t> ParseInteger(std::u16string_view text) {
  std::string digits = ToUtf8(Trimmed(text));
  const bool signed_number = !digits.empty() && (digits[0] == '-' || digits[0] == '+');
  const bool negative = signed_number && digits[0] == '-';
  if (signed_number) digits.erase(0, 1);
  const bool is_hex = digits.starts_with("0x") || digits.starts_with("0X");
  if (is_hex) digits.erase(0, 2);
  if (digits.starts_with('-')) return std::nullopt;
  return ParseNumber<std::int64_t>((negative ? "-" : "") + digits, is_hex ? 16 : 10);
}

std::optional<double> ParseReal(const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  stream.exceptions(std::ios::badbit);  // lets memory that runs out be told from a bad number
  double number = 0;
  stream >> number;
  if (stream.fail() || !stream.eof()) return std::nullopt;
  return number;
}

std::optional<std::string> DecodeBase64(std::u16string_view text) {
  constexpr std::u16string_view kDigits = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string bytes;
  unsigned buffer = 0;
  int bits = 0;
  for (const char16_t unit : text) {
    if (kBlanks.find(unit) != kBlanks.npos) continue;
    if (unit == u'=') break;
    const std::size_t digit = kDigits.find(unit);
    if (digit == kDigits.npos) return std::nullopt;
    buffer = (buffer << 6 | static_cast<unsigned>(digit)) & 0xFFFF;
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes += static_cast<char>(buffer >> bits & 0xFF);
    }
  }
  return bytes;
}

// The value of an element without elements inside.
Value SimpleValue(std::u16string_view name, const std::u16string& text) {
  if (name == u"string") return MakeString(text);
  if (name == u"true" || name == u"false") return Truth(name == u"true");
  if (name == u"date") return Make<Date>(std::u16string(Trimmed(text)));
  if (name == u"integer") {
    const std::optional<std::int64_t> number = ParseInteger(text);
    return number ? Value(Make<Number>(*number)) : Value();
  }
  if (name == u"real") {
    const std::optional<double> number = ParseReal(ToUtf8(Trimmed(text)));
    return number ? Value(Make<Number>(*number)) : Value();
  }
  if (name == u"data") {
    std::optional<std::string> bytes = DecodeBase64(text);
    return bytes ? Value(Make<Data>(std::move(*bytes))) : Value();
  }
  return {};
}

class Parser {
 public:
  explicit Parser(std::u16string_view text) : text_(text) {}

  // How far it has come.
  std::size_t place() const { return at_; }

  Value ParseDocument() {
    const std::optional<Tag> tag = NextTag();
    if (!tag || tag->is_end) return {};
    if (tag->name != u"plist") return ParseElement(*tag, 0);
    if (tag->is_empty) return {};
    const std::optional<Tag> top = NextTag();
    if (!top || top->is_end) return {};
    Value value = ParseElement(*top, 0);
    return value && TakeEnd(u"plist") ? std::move(value) : Value();
  }

 private:
  bool SkipPast(std::u16string_view end) {
    const std::size_t found = text_.find(end, at_);
    if (found == text_.npos) return false;
    at_ = found + end.size();
    return true;
  }

  // Past a document type; one with declarations of its own, in brackets, is refused.
  bool SkipDocumentType() {
    at_ = std::min(text_.find_first_of(u"[>", at_), text_.size());
    return text_.substr(at_).starts_with(u">") && SkipPast(u">");
  }

  // The next tag, past blanks, comments, instructions and the document type; nothing when something else stands there.
  std::optional<Tag> NextTag() {
    for (;;) {
      at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
      const std::u16string_view rest = text_.substr(at_);
      bool found = true;
      if (rest.starts_with(u"<?")) {
        found = SkipPast(u"?>");
      } else if (rest.starts_with(u"<!--")) {
        at_ += 4;
        found = SkipPast(u"-->");
      } else if (rest.starts_with(u"<!DOCTYPE")) {
        found = SkipDocumentType();
      } else if (rest.starts_with(u"<")) {
        return ParseTag();
      } else {
        return std::nullopt;
      }
      if (!found) return std::nullopt;
    }
  }

  std::optional<Tag> ParseTag() {
    const std::size_t start = at_ + 1;
    if (!SkipPast(u">")) return std::nullopt;
    std::u16string_view inside = text_.substr(start, at_ - 1 - start);
    Tag tag;
    tag.is_end = inside.starts_with(u"/");
    tag.is_empty = inside.ends_with(u"/");
    if (tag.is_end) inside.remove_prefix(1);
    if (tag.is_empty && !inside.empty()) inside.remove_suffix(1);
    tag.name = inside.substr(0, inside.find_first_of(kBlanks));
    return tag;
  }

  bool TakeEnd(std::u16string_view name) {
    const std::optional<Tag> tag = NextTag();
    return tag && tag->is_end && tag->name == name;
  }

  Value ParseElement(const Tag& tag, int depth) {
    if (depth > kDeepestList) return {};
    if (tag.name == u"dict") return tag.is_empty ? Value(Make<Dictionary>()) : ParseDictionary(depth);
    if (tag.name == u"array") return tag.is_empty ? Value(Make<Array>()) : ParseArray(depth);
    const std::optional<std::u16string> text = ParseContent(tag);
    return text ? SimpleValue(tag.name, *text) : Value();
  }

  Value ParseDictionary(int depth) {
    Ref<Dictionary> dictionary = Make<Dictionary>();
    for (;;) {
      const std::optional<Tag> tag = NextTag();
      if (!tag) return {};
      if (tag->is_end) return tag->name == u"dict" ? Value(std::move(dictionary)) : Value();
      if (tag->name != u"key") return {};
      std::optional<std::u16string> key = ParseContent(*tag);
      const std::optional<Tag> value_tag = NextTag();
      if (!key || !value_tag || value_tag->is_end) return {};
      Value value = ParseElement(*value_tag, depth + 1);
      if (!value) return {};
      dictionary->entries.insert_or_assign(std::move(*key), std::move(value));
    }
  }

  Value ParseArray(int depth) {
    Ref<Array> array = Make<Array>();
    for (;;) {
      const std::optional<Tag> tag = NextTag();
      if (!tag) return {};
      if (tag->is_end) return tag->name == u"array" ? Value(std::move(array)) : Value();
      Value value = ParseElement(*tag, depth + 1);
      if (!value) return {};
      array->values.push_back(std::move(value));
    }
  }

  // The text up to the element's end, entities resolved.
  std::optional<std::u16string> ParseContent(const Tag& tag) {
    std::u16string text;
    if (tag.is_empty) return text;
    while (at_ < text_.size()) {
      const std::u16string_view rest = text_.substr(at_);
      bool sound = true;
      if (rest.starts_with(u"<![CDATA[")) {
        sound = ParseLiteral(text);
      } else if (rest.starts_with(u"<!--")) {
        at_ += 4;
        sound = SkipPast(u"-->");
      } else if (rest[0] == u'<') {
        return TakeEnd(tag.name) ? std::optional(std::move(text)) : std::nullopt;
      } else if (rest[0] == u'&') {
        sound = ParseEntity(text);
      } else {
        text += rest[0];
        ++at_;
      }
      if (!sound) return std::nullopt;
    }
    return std::nullopt;
  }

  bool ParseLiteral(std::u16string& text) {
    const std::size_t start = at_ + 9;
    if (!SkipPast(u"]]>")) return false;
    text += text_.substr(start, at_ - 3 - start);
    return true;
  }

  bool ParseEntity(std::u16string& text) {
    const std::size_t start = at_ + 1;
    if (!SkipPast(u";")) return false;
    const std::u16string_view name = text_.substr(start, at_ - 1 - start);
    if (name.starts_with(u"#")) return AppendCharacter(ToUtf8(name.substr(1)), text);
    for (const Entity& entity : kEntities) {
      if (entity.name != name) continue;
      text += entity.unit;
      return true;
    }
    return false;
  }

  static bool AppendCharacter(std::string_view digits, std::u16string& text) {
    const bool is_hex = digits.starts_with('x');
    if (is_hex) digits.remove_prefix(1);
    const std::optional<unsigned> number = ParseNumber<unsigned>(digits, is_hex ? 16 : 10);
    return number && AppendCodePoint(text, *number);
  }

  const std::u16string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

Value ParseXmlList(std::u16string_view text, std::size_t& place) {
  Parser parser(text);
  Value list = parser.ParseDocument();
  place = parser.place();
  return list;
}

}  // namespace sok
