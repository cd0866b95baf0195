// The directives of a format and their meaning.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace sok {

enum class Directive {
  kText,  // literal text: no argument
  kNothing,
  kInteger,
  kUnsigned,
  kDouble,
  kCharacter,
  kUnit,
  kBytes,
  kUnits,
  kPascal,
  kObject,
  kPointer,
};

// The argument's size letters.
enum class ArgumentSize { kInt, kChar, kShort, kLong, kLongDouble };

// One directive, or literal text between directives.
struct Conversion {
  static constexpr int kNone = -1;  // not given
  static constexpr int kNext = -2;  // an argument of its own, the next in the list

  Directive directive = Directive::kText;
  std::u16string_view text;  // of kText
  char letter = 0;           // as printf knows it
  ArgumentSize size = ArgumentSize::kInt;
  bool minus = false;
  bool plus = false;
  bool space = false;
  bool alternate = false;
  bool zero = false;
  int width = kNone;
  int precision = kNone;
  bool bare_precision = false;     // a dot without digits: 0 for numbers, none for text
  int argument = kNone;            // index of the value; counted on from the last one when not given
  int width_argument = kNone;      // index of the width
  int precision_argument = kNone;  // index of the precision
};

// Splits a format. Nothing when a number in a directive does not fit an int.
std::optional<std::vector<Conversion>> ParseFormat(std::u16string_view format);

}  // namespace sok
