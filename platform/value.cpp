#include "platform/value.h"

#include <cmath>
#include <cstdio>

namespace sok {

Value Truth(bool value) {
  const CFBooleanRef truth = value ? kCFBooleanTrue : kCFBooleanFalse;
  truth->Retain();
  return Value::Adopt(truth);
}

}  // namespace sok

const CFBooleanRef kCFBooleanTrue = sok::Constant(sok::Make<__CFBoolean>(true));
const CFBooleanRef kCFBooleanFalse = sok::Constant(sok::Make<__CFBoolean>(false));
const CFNullRef kCFNull = sok::Constant(sok::Make<__CFNull>());

std::u16string __CFNumber::Description() const {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return sok::Widen(std::to_string(*integer));
  const double number = std::get<double>(value);
  if (std::isnan(number)) return u"nan";
  if (std::isinf(number)) return number < 0 ? u"-infinity" : u"+infinity";
  if (number == 0) return u"0.0";
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", number);
  return sok::Widen(text);
}

const sok::Object* __CFDictionary::Find(std::u16string_view key) const {
  const auto found = entries.find(key);
  return found != entries.end() ? found->second.get() : nullptr;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
  return sok::OrElse<CFNumberRef>(nullptr, [&]() -> CFNumberRef {
    switch (type) {
      case kCFNumberSInt32Type:
        return new sok::Number(std::int64_t{*static_cast<const SInt32*>(value)});
      case kCFNumberSInt64Type:
        return new sok::Number(*static_cast<const std::int64_t*>(value));
      case kCFNumberDoubleType:
        return new sok::Number(*static_cast<const double*>(value));
      default:
        return nullptr;
    }
  });
}
