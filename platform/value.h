// The values of property lists beside strings.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "platform/object.h"
#include "platform/string_object.h"

struct __CFNumber final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kNumber;
  using Value = std::variant<std::int64_t, double>;

  explicit __CFNumber(Value number) : Object(kKind), value(number) {}
  std::u16string Description() const override;

  const Value value;
};

struct __CFBoolean final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kBoolean;

  explicit __CFBoolean(bool truth) : Object(kKind), value(truth) {}
  std::u16string Description() const override { return value ? u"true" : u"false"; }

  const bool value;
};

struct __CFNull final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kNull;

  __CFNull() : Object(kKind) {}
  std::u16string Description() const override { return u"null"; }
};

struct __CFDictionary final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kDictionary;

  __CFDictionary() : Object(kKind) {}

  // The value of a key, borrowed; null when there is none.
  const sok::Object* Find(std::u16string_view key) const;

  std::map<std::u16string, sok::Ref<const sok::Object>, std::less<>> entries;
};

namespace sok {

using Value = Ref<const Object>;
using Number = ::__CFNumber;
using Dictionary = ::__CFDictionary;

struct Array final : Object {
  static constexpr Kind kKind = Kind::kArray;

  Array() : Object(kKind) {}

  std::vector<Value> values;
};

struct Data final : Object {
  static constexpr Kind kKind = Kind::kData;

  explicit Data(std::string content) : Object(kKind), bytes(std::move(content)) {}

  const std::string bytes;
};

struct Date final : Object {
  static constexpr Kind kKind = Kind::kDate;

  explicit Date(std::u16string iso) : Object(kKind), text(std::move(iso)) {}
  std::u16string Description() const override { return text; }

  const std::u16string text;
};

// The booleans as property list values.
Value Truth(bool value);

}  // namespace sok
