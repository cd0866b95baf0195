#include "platform/string_object.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <mutex>

namespace sok {
namespace {

// What may stand before a number, and between its sign and its digits: controls and blanks.
bool IsBlank(char16_t unit) {
  return unit <= 0x20 || (unit >= 0x7F && unit <= 0xA0) || (unit >= 0x2000 && unit <= 0x200B) || unit == 0x3000;
}

SInt32 LeadingNumber(std::u16string_view text) {
  auto at = text.begin();
  const auto skip_blanks = [&] { at = std::find_if_not(at, text.end(), IsBlank); };
  skip_blanks();
  bool negative = false;
  if (at != text.end() && (*at == u'-' || *at == u'+')) {
    negative = *at++ == u'-';
    skip_blanks();
  }
  constexpr long long kLimit = static_cast<long long>(std::numeric_limits<SInt32>::max());
  long long number = 0;
  for (; at != text.end() && *at >= u'0' && *at <= u'9'; ++at) {
    number = std::min(number * 10 + (*at - u'0'), kLimit + 1);
  }
  return static_cast<SInt32>(negative ? -number : std::min(number, kLimit));
}

// Texts of CFSTR by content; freed never, so that they may be used until the very end of the process.
class Constants {
 public:
  CFStringRef Find(std::string_view text) {
    const std::lock_guard lock(mutex_);
    const auto found = strings_.find(text);
    if (found != strings_.end() && found->second != nullptr) return found->second;
    CFStringRef& made = strings_[std::string(text)];  // the place first: nothing frees a constant that finds none
    return made = Constant(MakeString(Widen(text)));
  }

 private:
  std::mutex mutex_;
  std::map<std::string, CFStringRef, std::less<>> strings_;
};

}  // namespace

Ref<String> MakeString(std::u16string_view units) {
  return String::Make(units.size(), [&](char16_t* room) { return units.copy(room, units.size()); });
}

// All units are looked at: without a way out the loop takes many at a time.
bool IsAscii(std::u16string_view units) {
  char16_t bits = 0;
  for (const char16_t unit : units) bits = static_cast<char16_t>(bits | unit);
  return bits < 0x80;
}

std::u16string Widen(std::string_view ascii) {
  std::u16string units(ascii.size(), u'\0');
  std::transform(ascii.begin(), ascii.end(), units.begin(),
                 [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
  return units;
}

}  // namespace sok

CFTypeID CFStringGetTypeID() { return static_cast<CFTypeID>(sok::Kind::kString); }

CFStringRef __CFStringMakeConstantString(const char* text) {
  return sok::OrElse<CFStringRef>(nullptr, [&] {
    static sok::Constants& constants = *new sok::Constants;
    return constants.Find(text);
  });
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* units, CFIndex length) {
  if (length < 0 || (units == nullptr && length > 0)) return nullptr;
  const auto copy = [&](char16_t* room) { return static_cast<std::size_t>(std::copy_n(units, length, room) - room); };
  return sok::OrElse<CFStringRef>(nullptr,
                                  [&] { return sok::String::Make(static_cast<std::size_t>(length), copy).Detach(); });
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(sok::View(string).size()); }

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const std::u16string_view units = sok::View(string);
  if (range.location < 0 || range.length <= 0 || static_cast<std::size_t>(range.location) > units.size()) return;
  const std::u16string_view part =
      units.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
  std::memcpy(buffer, part.data(), part.size() * sizeof(UniChar));
}

SInt32 CFStringGetIntValue(CFStringRef string) { return sok::LeadingNumber(sok::View(string)); }

CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFStringCompareFlags) {
  const int order = sok::View(left).compare(sok::View(right));
  if (order == 0) return kCFCompareEqualTo;
  return order < 0 ? kCFCompareLessThan : kCFCompareGreaterThan;
}
