// Strings of UTF-16 units.
#pragma once

#include <new>
#include <string>
#include <string_view>

#include "platform/object.h"

// The units stand right behind the object, in one piece of memory with it. They are written once, by the maker.
struct __CFString final : sok::Object {
  static constexpr sok::Kind kKind = sok::Kind::kString;

  // A string of what `write(units)` puts into the given room and counts. May throw for want of memory.
  template <typename Write>
  static sok::Ref<__CFString> Make(std::size_t room, Write write) {
    void* const memory = ::operator new(sizeof(__CFString) + room * sizeof(char16_t));
    sok::Ref<__CFString> made = sok::Ref<__CFString>::Adopt(::new (memory) __CFString);
    made->size_ = write(made->Room());
    return made;
  }
  static void operator delete(void* memory) { ::operator delete(memory); }

  std::u16string_view units() const { return {reinterpret_cast<const char16_t*>(this + 1), size_}; }
  std::u16string Description() const override { return std::u16string(units()); }

 private:
  __CFString() : Object(kKind) {}
  char16_t* Room() { return reinterpret_cast<char16_t*>(this + 1); }

  std::size_t size_ = 0;
};

namespace sok {

using String = ::__CFString;

// A string of these units.
Ref<String> MakeString(std::u16string_view units);

// The units of a string that may be null; null counts as empty, as does what is no string: a table of strings may hold
// that, and hands it over as it is.
inline std::u16string_view View(CFStringRef string) {
  const auto* const text = As<String>(string);
  return text != nullptr ? text->units() : std::u16string_view();
}

// Whether all units are ASCII.
bool IsAscii(std::u16string_view units);

// ASCII text widened.
std::u16string Widen(std::string_view ascii);

}  // namespace sok
