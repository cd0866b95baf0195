#include "platform/format.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>

#include "platform/mac_roman.h"
#include "platform/string_object.h"

namespace sok {
namespace {

constexpr std::size_t kNumericLimit = 510;  // the characters that one numeric directive yields at most

// A value of the argument list as its directive reads it.
struct Argument {
  Directive directive = Directive::kText;
  ArgumentSize size = ArgumentSize::kInt;
  long integer = 0;
  double number = 0;
  long double long_number = 0;
  const void* pointer = nullptr;
};

// Gives every directive the indexes of its arguments, and returns what the list holds by index; nothing when an index
// is out of reach. Directives without an index count on their own, and an index may be used more than once.
std::optional<std::vector<Argument>> PlanArguments(std::vector<Conversion>& conversions, std::size_t percent_signs) {
  std::vector<Argument> arguments(3 * percent_signs + 1);  // value, width and precision of each
  int next = 0;
  for (Conversion& conversion : conversions) {
    if (conversion.directive == Directive::kText) continue;
    for (int* index : {&conversion.width_argument, &conversion.precision_argument, &conversion.argument}) {
      const bool is_value = index == &conversion.argument;
      if (*index == Conversion::kNone && !is_value) continue;
      if (*index < 0) *index = next++;
      if (static_cast<std::size_t>(*index) >= arguments.size()) return std::nullopt;
      Argument& argument = arguments[static_cast<std::size_t>(*index)];
      argument.directive = is_value ? conversion.directive : Directive::kInteger;
      argument.size = is_value ? conversion.size : ArgumentSize::kInt;
    }
  }
  return arguments;
}

// Takes the arguments from the list in the order of their indexes; an index that nothing refers to takes none.
void TakeArguments(std::vector<Argument>& arguments, va_list list) {
  for (Argument& argument : arguments) {
    switch (argument.directive) {
      case Directive::kText:
        break;
      case Directive::kInteger:
      case Directive::kUnsigned:
      case Directive::kCharacter:
      case Directive::kUnit: {
        const bool wide = argument.size == ArgumentSize::kLong || argument.size == ArgumentSize::kLongDouble;
        const bool is_number = argument.directive == Directive::kInteger || argument.directive == Directive::kUnsigned;
        argument.integer = wide && is_number ? va_arg(list, long) : va_arg(list, int);
        break;
      }
      case Directive::kDouble:
        if (argument.size == ArgumentSize::kLongDouble) {
          argument.long_number = va_arg(list, long double);
        } else {
          argument.number = va_arg(list, double);
        }
        break;
      case Directive::kNothing:
      case Directive::kBytes:
      case Directive::kUnits:
      case Directive::kPascal:
      case Directive::kObject:
      case Directive::kPointer:
        argument.pointer = va_arg(list, const void*);
        break;
    }
  }
}

// printf for one number, cut to what one directive may yield.
template <typename Value>
std::u16string Print(const Conversion& conversion, const char* length_modifier, char letter, Value value) {
  std::string format = "%";
  if (conversion.minus) format += '-';
  if (conversion.plus) format += '+';
  if (conversion.space) format += ' ';
  if (conversion.alternate) format += '#';
  if (conversion.zero) format += '0';
  if (conversion.width >= 0) format += std::to_string(conversion.width);
  if (conversion.precision >= 0) format += "." + std::to_string(conversion.precision);
  format += length_modifier;
  format += letter;
  char text[kNumericLimit + 1] = "";
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  std::snprintf(text, sizeof text, format.c_str(), value);
#pragma GCC diagnostic pop
  return Widen(text);
}

std::u16string PrintInteger(const Conversion& conversion, long value) {
  switch (conversion.size) {
    case ArgumentSize::kChar:
      return Print(conversion, "hh", conversion.letter, static_cast<int>(value));
    case ArgumentSize::kShort:
      return Print(conversion, "h", conversion.letter, static_cast<int>(value));
    case ArgumentSize::kInt:
      return Print(conversion, "", conversion.letter, static_cast<int>(value));
    case ArgumentSize::kLong:
    case ArgumentSize::kLongDouble:
      break;
  }
  return Print(conversion, "l", conversion.letter, value);
}

std::u16string PrintPointer(Conversion conversion, const void* pointer) {
  conversion.alternate = true;
  if (pointer != nullptr) return Print(conversion, "l", 'x', reinterpret_cast<std::uintptr_t>(pointer));
  conversion.precision = Conversion::kNone;
  return Print(conversion, "", 's', "0x0");
}

// Pads text to the width; never with zeros.
std::u16string Padded(const Conversion& conversion, std::u16string text) {
  const std::size_t width = conversion.width > 0 ? static_cast<std::size_t>(conversion.width) : 0;
  if (text.size() < width) text.insert(conversion.minus ? text.size() : 0, width - text.size(), u' ');
  return text;
}

std::size_t Limit(const Conversion& conversion) {
  return conversion.precision >= 0 ? static_cast<std::size_t>(conversion.precision)
                                   : std::numeric_limits<std::size_t>::max();
}

std::u16string FromMacRoman(const unsigned char* bytes, std::size_t length) {
  std::u16string text(length, u'\0');
  MacRomanUnits({reinterpret_cast<const char*>(bytes), length}, text.data());
  return text;
}

template <typename Unit>
std::size_t BoundedLength(const Unit* text, std::size_t limit) {
  std::size_t length = 0;
  while (length < limit && text[length] != 0) ++length;
  return length;
}

std::u16string PrintText(const Conversion& conversion, const void* pointer) {
  if (pointer == nullptr) return u"(null)";
  switch (conversion.directive) {
    case Directive::kUnits: {
      const auto* units = static_cast<const UniChar*>(pointer);
      return Padded(conversion, std::u16string(units, units + BoundedLength(units, Limit(conversion))));
    }
    case Directive::kPascal: {
      const auto* bytes = static_cast<const unsigned char*>(pointer);
      return Padded(conversion, FromMacRoman(bytes + 1, std::min<std::size_t>(bytes[0], Limit(conversion))));
    }
    case Directive::kObject:
      return static_cast<const Object*>(pointer)->Description();
    default: {
      const auto* bytes = static_cast<const unsigned char*>(pointer);
      return Padded(conversion, FromMacRoman(bytes, BoundedLength(bytes, Limit(conversion))));
    }
  }
}

std::u16string PrintValue(const Conversion& conversion, const Argument& argument) {
  switch (conversion.directive) {
    case Directive::kInteger:
    case Directive::kUnsigned:
      return PrintInteger(conversion, argument.integer);
    case Directive::kDouble:
      if (conversion.size == ArgumentSize::kLongDouble) {
        return Print(conversion, "L", conversion.letter, argument.long_number);
      }
      return Print(conversion, "", conversion.letter, argument.number);
    case Directive::kCharacter:
      return Print(conversion, "", 'c', static_cast<int>(argument.integer));
    case Directive::kUnit:
      return std::u16string(1, static_cast<char16_t>(argument.integer));
    case Directive::kPointer:
      return PrintPointer(conversion, argument.pointer);
    case Directive::kBytes:
    case Directive::kUnits:
    case Directive::kPascal:
    case Directive::kObject:
      return PrintText(conversion, argument.pointer);
    case Directive::kText:
    case Directive::kNothing:
      break;
  }
  return {};
}

// Fills in the width and precision that arguments give. A negative width aligns numbers on the left and leaves text
// unpadded; a negative precision counts as none.
Conversion Resolved(Conversion conversion, const std::vector<Argument>& arguments) {
  const bool is_text = conversion.directive == Directive::kBytes || conversion.directive == Directive::kUnits ||
                       conversion.directive == Directive::kPascal;
  if (conversion.bare_precision && !is_text) conversion.precision = 0;
  if (conversion.width_argument >= 0) {
    conversion.width = static_cast<int>(arguments[static_cast<std::size_t>(conversion.width_argument)].integer);
    if (conversion.width < 0 && !is_text) {
      conversion.minus = true;
      conversion.width =
          conversion.width == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -conversion.width;
    }
  }
  if (conversion.precision_argument >= 0) {
    conversion.precision = static_cast<int>(arguments[static_cast<std::size_t>(conversion.precision_argument)].integer);
  }
  return conversion;
}

CFStringRef Format(std::u16string_view format, va_list list) {
  std::optional<std::vector<Conversion>> conversions = ParseFormat(format);
  if (!conversions) return nullptr;
  const auto percent_signs = static_cast<std::size_t>(std::count(format.begin(), format.end(), u'%'));
  std::optional<std::vector<Argument>> arguments = PlanArguments(*conversions, percent_signs);
  if (!arguments) return MakeString({}).Detach();
  TakeArguments(*arguments, list);
  std::u16string text;
  for (const Conversion& conversion : *conversions) {
    if (conversion.directive == Directive::kText) {
      text += conversion.text;
    } else {
      text += PrintValue(Resolved(conversion, *arguments), (*arguments)[static_cast<std::size_t>(conversion.argument)]);
    }
  }
  return MakeString(text).Detach();
}

}  // namespace
}  // namespace sok

CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef, CFDictionaryRef, CFStringRef format,
                                                 va_list arguments) {
  if (format == nullptr) return nullptr;
  va_list list;
  va_copy(list, arguments);
  const CFStringRef made = sok::OrElse<CFStringRef>(nullptr, [&] { return sok::Format(format->units(), list); });
  va_end(list);
  return made;
}

CFStringRef CFStringCreateWithFormat(CFAllocatorRef allocator, CFDictionaryRef options, CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const CFStringRef made = CFStringCreateWithFormatAndArguments(allocator, options, format, arguments);
  va_end(arguments);
  return made;
}
