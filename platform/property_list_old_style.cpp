// The old style: { key = value; }, ( value, value ), <hex data>, "quoted" and plain words; also a bare list of
// `key = value;` or `key;` entries, as tables of strings have it.

#include <algorithm>
#include <optional>

#include "platform/property_list.h"
#include "platform/property_list_text.h"

namespace sok {
namespace {

// The upper half of the character set that octal escapes count in.
constexpr char16_t kNextStep[128] = {
    0x00A0, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C7, 0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC,
    0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3, 0x00D4, 0x00D5, 0x00D6, 0x00D9, 0x00DA, 0x00DB,
    0x00DC, 0x00DD, 0x00DE, 0x00B5, 0x00D7, 0x00F7, 0x00A9, 0x00A1, 0x00A2, 0x00A3, 0x2044, 0x00A5, 0x0192,
    0x00A7, 0x00A4, 0x2019, 0x201C, 0x00AB, 0x2039, 0x203A, 0xFB01, 0xFB02, 0x00AE, 0x2013, 0x2020, 0x2021,
    0x00B7, 0x00A6, 0x00B6, 0x2022, 0x201A, 0x201E, 0x201D, 0x00BB, 0x2026, 0x2030, 0x00AC, 0x00BF, 0x00B9,
    0x02CB, 0x00B4, 0x02C6, 0x02DC, 0x00AF, 0x02D8, 0x02D9, 0x00A8, 0x00B2, 0x02DA, 0x00B8, 0x00B3, 0x02DD,
    0x02DB, 0x02C7, 0x2014, 0x00B1, 0x00BC, 0x00BD, 0x00BE, 0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5,
    0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x00EC, 0x00C6, 0x00ED, 0x00AA, 0x00EE, 0x00EF, 0x00F0, 0x00F1,
    0x0141, 0x00D8, 0x0152, 0x00BA, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00E6, 0x00F9, 0x00FA, 0x00FB,
    0x0131, 0x00FC, 0x00FD, 0x0142, 0x00F8, 0x0153, 0x00DF, 0x00FE, 0x00FF, 0xFFFD, 0xFFFD,
};

constexpr bool IsLetter(char16_t unit) { return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z'; }
constexpr bool IsWordUnit(char16_t unit) {
  return IsLetter(unit) || (unit >= u'0' && unit <= u'9') ||
         std::u16string_view(u"_$/:.-").find(unit) != std::u16string_view::npos;
}
constexpr bool IsLineEnd(char16_t unit) { return unit == u'\n' || unit == u'\r' || unit == 0x2028 || unit == 0x2029; }
constexpr bool IsBlank(char16_t unit) { return (unit >= 0x09 && unit <= 0x0D) || unit == u' ' || IsLineEnd(unit); }

constexpr int HexValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  const int letter = (unit | 0x20) - u'a';
  return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

constexpr int OctalValue(char16_t unit) { return unit >= u'0' && unit <= u'7' ? unit - u'0' : -1; }

class Parser {
 public:
  explicit Parser(std::u16string_view text) : text_(text) {}

  // Where the outermost entry or value that is read last begins.
  std::size_t last() const { return last_; }

  Value ParseFile() {
    SkipBlanks();
    if (AtEnd()) return Make<Dictionary>();
    Value list = ParseValue(0);
    SkipBlanks();
    if (AtEnd()) return list;
    // More behind a first text: the entries of a dictionary without braces.
    if (As<String>(list.get()) == nullptr) return {};
    at_ = 0;
    return ParseEntries(0);
  }

 private:
  bool AtEnd() const { return at_ == text_.size(); }
  bool At(char16_t unit) const { return !AtEnd() && text_[at_] == unit; }
  bool Take(char16_t unit) {
    if (!At(unit)) return false;
    ++at_;
    return true;
  }

  void SkipBlanks() {
    while (!AtEnd()) {
      const std::u16string_view rest = text_.substr(at_);
      if (IsBlank(rest[0])) {
        ++at_;
      } else if (rest.starts_with(u"//")) {
        at_ = static_cast<std::size_t>(std::find_if(rest.begin(), rest.end(), IsLineEnd) - text_.begin());
      } else if (rest.starts_with(u"/*")) {
        const std::size_t close = text_.find(u"*/", at_ + 2);
        at_ = close != text_.npos ? close + 2 : text_.size();
      } else {
        return;
      }
    }
  }

  // Null when there is none, or when what there is is broken.
  Value ParseValue(int depth) {
    SkipBlanks();
    if (AtEnd() || depth > kDeepestList) return {};
    if (Take(u'{')) {
      Value entries = ParseEntries(depth + 1);
      return entries && Take(u'}') ? std::move(entries) : Value();
    }
    if (Take(u'(')) return ParseArray(depth + 1);
    if (Take(u'<')) return ParseData();
    std::optional<std::u16string> text = ParseText();
    return text ? Value(MakeString(*text)) : Value();
  }

  // Entries up to the first character that cannot begin a key. Null when one of them is broken.
  Value ParseEntries(int depth) {
    Ref<Dictionary> dictionary = Make<Dictionary>();
    for (SkipBlanks(); !AtEnd() && BeginsText(text_[at_]); SkipBlanks()) {
      if (depth <= 1) last_ = at_;
      std::optional<std::u16string> key = ParseText();
      if (!key) return {};
      SkipBlanks();
      Value value;
      if (Take(u'=')) {
        value = ParseValue(depth);
        SkipBlanks();
      } else if (At(u';')) {
        value = MakeString(*key);
      }
      if (!value || !Take(u';')) return {};
      dictionary->entries.insert_or_assign(std::move(*key), std::move(value));
    }
    return dictionary;
  }

  Value ParseArray(int depth) {
    Ref<Array> array = Make<Array>();
    do {
      SkipBlanks();
      if (At(u')')) break;
      Value value = ParseValue(depth);
      if (!value) return {};
      array->values.push_back(std::move(value));
      SkipBlanks();
    } while (Take(u','));
    return Take(u')') ? Value(std::move(array)) : Value();
  }

  Value ParseData() {
    std::string bytes;
    int high = -1;
    for (; !AtEnd() && !At(u'>'); ++at_) {
      const int digit = HexValue(text_[at_]);
      if (digit < 0) {
        if (high >= 0 || !IsBlank(text_[at_])) return {};
      } else if (high < 0) {
        high = digit;
      } else {
        bytes += static_cast<char>(high << 4 | digit);
        high = -1;
      }
    }
    return high < 0 && Take(u'>') ? Value(Make<Data>(std::move(bytes))) : Value();
  }

  static bool BeginsText(char16_t unit) { return unit == u'"' || unit == u'\'' || IsWordUnit(unit); }

  std::optional<std::u16string> ParseText() {
    if (At(u'"') || At(u'\'')) return ParseQuoted(text_[at_++]);
    const std::size_t start = at_;
    while (!AtEnd() && IsWordUnit(text_[at_])) ++at_;
    if (at_ == start) return std::nullopt;
    return std::u16string(text_.substr(start, at_ - start));
  }

  std::optional<std::u16string> ParseQuoted(char16_t quote) {
    std::u16string text;
    while (!AtEnd()) {
      const char16_t unit = text_[at_++];
      if (unit == quote) return text;
      if (unit != u'\\') {
        text += unit;
      } else if (!AtEnd()) {
        text += ParseEscape();
      }
    }
    return std::nullopt;
  }

  char16_t ParseEscape() {
    constexpr std::u16string_view kLetters = u"abfnrtv", kControls = u"\a\b\f\n\r\t\v";
    const char16_t unit = text_[at_++];
    if (unit == u'U') return static_cast<char16_t>(ParseDigits(4, 4, HexValue));
    if (const std::size_t letter = kLetters.find(unit); letter != kLetters.npos) return kControls[letter];
    if (OctalValue(unit) < 0) return unit;
    --at_;
    const int number = ParseDigits(3, 3, OctalValue) & 0xFF;
    return number < 0x80 ? static_cast<char16_t>(number) : kNextStep[number - 0x80];
  }

  // The number that at most so many digits make, each worth so many bits.
  int ParseDigits(std::size_t most, int bits, int (*value_of)(char16_t)) {
    int number = 0;
    for (const std::size_t end = at_ + most; at_ < end && !AtEnd() && value_of(text_[at_]) >= 0; ++at_) {
      number = number << bits | value_of(text_[at_]);
    }
    return number;
  }

  const std::u16string_view text_;
  std::size_t at_ = 0, last_ = 0;
};

}  // namespace

Value ParseOldStyleList(std::u16string_view text, std::size_t& place) {
  Parser parser(text);
  Value list = parser.ParseFile();
  place = parser.last();
  return list;
}

}  // namespace sok
