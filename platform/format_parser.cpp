#include <algorithm>
#include <limits>

#include "platform/format.h"

namespace sok {
namespace {

struct Letter {
  char16_t unit;
  Directive directive;
  char printf_letter;
};

constexpr Letter kLetters[] = {
    {u'd', Directive::kInteger, 'd'},  {u'i', Directive::kInteger, 'd'},  {u'D', Directive::kInteger, 'd'},
    {u'u', Directive::kUnsigned, 'u'}, {u'U', Directive::kUnsigned, 'u'}, {u'x', Directive::kUnsigned, 'x'},
    {u'X', Directive::kUnsigned, 'X'}, {u'o', Directive::kUnsigned, 'o'}, {u'O', Directive::kUnsigned, 'o'},
    {u'f', Directive::kDouble, 'f'},   {u'F', Directive::kDouble, 'F'},   {u'e', Directive::kDouble, 'e'},
    {u'E', Directive::kDouble, 'E'},   {u'g', Directive::kDouble, 'g'},   {u'G', Directive::kDouble, 'G'},
    {u'a', Directive::kDouble, 'a'},   {u'A', Directive::kDouble, 'A'},   {u'c', Directive::kCharacter, 'c'},
    {u'C', Directive::kUnit, 'C'},     {u's', Directive::kBytes, 's'},    {u'S', Directive::kUnits, 'S'},
    {u'P', Directive::kPascal, 'P'},   {u'@', Directive::kObject, '@'},   {u'p', Directive::kPointer, 'p'},
    {u'n', Directive::kNothing, 'n'},
};

enum class Outcome { kDirective, kUnknown, kCutOff, kOverflow };

// Reads one directive, from behind its percent sign.
class DirectiveParser {
 public:
  DirectiveParser(std::u16string_view format, std::size_t at) : format_(format), at_(at) {}

  Outcome Parse(Conversion& conversion) {
    bool number_or_dot = false;  // the last thing read
    while (at_ < format_.size()) {
      const char16_t unit = format_[at_];
      number_or_dot = unit == u'.';
      if (unit >= u'1' && unit <= u'9') {
        if (!Number(conversion, number_or_dot)) return Outcome::kOverflow;
        continue;
      }
      ++at_;
      if (Brackets(unit) || Flag(unit, conversion) || Size(unit, conversion)) continue;
      return Last(unit, conversion);
    }
    return number_or_dot ? Outcome::kUnknown : Outcome::kCutOff;
  }

  std::size_t at() const { return at_; }

 private:
  // A width, a precision, or with a dollar sign the index of an argument. `is_plain`: it stood without the sign.
  bool Number(Conversion& conversion, bool& is_plain) {
    long long number = 0;
    for (; at_ < format_.size() && format_[at_] >= u'0' && format_[at_] <= u'9'; ++at_) {
      number = number * 10 + (format_[at_] - u'0');
      if (number > std::numeric_limits<int>::max()) return false;
    }
    const int value = static_cast<int>(number);
    is_plain = at_ == format_.size() || format_[at_] != u'$';
    if (is_plain) {
      (seen_dot_ ? conversion.precision : conversion.width) = value;
      conversion.bare_precision = false;
      return true;
    }
    ++at_;
    if (conversion.precision_argument == Conversion::kNext) {
      conversion.precision_argument = value - 1;
    } else if (conversion.width_argument == Conversion::kNext) {
      conversion.width_argument = value - 1;
    } else {
      conversion.argument = value - 1;
    }
    return true;
  }

  // Skips what stands in brackets.
  bool Brackets(char16_t unit) {
    if (unit != u'[') return false;
    const std::size_t close = format_.find(u']', at_);
    at_ = close != format_.npos ? close + 1 : format_.size();
    return true;
  }

  bool Flag(char16_t unit, Conversion& conversion) {
    switch (unit) {
      case u'-':
        conversion.minus = true;
        return true;
      case u'+':
        conversion.plus = true;
        return true;
      case u' ':
        conversion.space = true;
        return true;
      case u'#':
        conversion.alternate = true;
        return true;
      case u'0':
        Zero(conversion);
        return true;
      case u'*':
        (seen_dot_ ? conversion.precision_argument : conversion.width_argument) = Conversion::kNext;
        conversion.bare_precision = false;
        return true;
      case u'.':
        seen_dot_ = true;
        conversion.bare_precision = true;
        return true;
      default:
        return false;
    }
  }

  void Zero(Conversion& conversion) const {
    if (seen_dot_) {
      conversion.precision = 0;
      conversion.bare_precision = false;
    } else {
      conversion.zero = true;
    }
  }

  bool Size(char16_t unit, Conversion& conversion) {
    switch (unit) {
      case u'h':
        conversion.size = at_ < format_.size() && format_[at_] == u'h' ? ArgumentSize::kChar : ArgumentSize::kShort;
        if (conversion.size == ArgumentSize::kChar) ++at_;
        return true;
      case u'l':
      case u'q':
      case u'j':
      case u'z':
      case u't':
        conversion.size = ArgumentSize::kLong;
        return true;
      case u'L':
        conversion.size = ArgumentSize::kLongDouble;
        return true;
      default:
        return false;
    }
  }

  static Outcome Last(char16_t unit, Conversion& conversion) {
    for (const Letter& letter : kLetters) {
      if (letter.unit != unit) continue;
      conversion.directive = letter.directive;
      conversion.letter = letter.printf_letter;
      return Outcome::kDirective;
    }
    return Outcome::kUnknown;
  }

  const std::u16string_view format_;
  std::size_t at_;
  bool seen_dot_ = false;
};

}  // namespace

std::optional<std::vector<Conversion>> ParseFormat(std::u16string_view format) {
  std::vector<Conversion> conversions;
  const auto add_text = [&conversions](std::u16string_view text) {
    if (!text.empty()) conversions.emplace_back().text = text;
  };
  std::size_t at = 0;
  while (at < format.size()) {
    const std::size_t percent = std::min(format.find(u'%', at), format.size());
    add_text(format.substr(at, percent - at));
    if (percent == format.size()) break;
    DirectiveParser parser(format, percent + 1);
    Conversion conversion;
    switch (parser.Parse(conversion)) {
      case Outcome::kDirective:
        conversions.push_back(conversion);
        break;
      case Outcome::kUnknown:  // stands for the one character behind the percent sign
        add_text(format.substr(percent + 1, 1));
        break;
      case Outcome::kCutOff:
        break;
      case Outcome::kOverflow:
        return std::nullopt;
    }
    at = parser.at();
  }
  return conversions;
}

}  // namespace sok
