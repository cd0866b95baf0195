#include "SokExtShared/LIB/strings/eu16string.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

#include "SokExtShared/LIB/strings/utf16_format.h"
#include "tests/text/units.h"

namespace {
bool g_out_of_memory = false;
}

// In front of the platform's: one that can end, and that decodes a byte to U+0000.
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* units, CFIndex length) {
  static const auto real = reinterpret_cast<decltype(&CFStringCreateWithCharacters)>(dlsym(RTLD_NEXT, __func__));
  return g_out_of_memory ? nullptr : real(allocator, units, length);
}
CFStringRef CFStringCreateWithCString(CFAllocatorRef allocator, const char* text, CFStringEncoding encoding) {
  static const auto real = reinterpret_cast<decltype(&CFStringCreateWithCString)>(dlsym(RTLD_NEXT, __func__));
  constexpr UniChar kDecoded[] = {'a', 0, 'b'};
  return std::strcmp(text, "a\1b") == 0 ? CFStringCreateWithCharacters(allocator, kDecoded, 3)
                                        : real(allocator, text, encoding);
}

namespace {

std::u16string Text(const eu16string& text) { return {text.begin(), text.end()}; }
const unsigned char* Utf8(const char* text) { return reinterpret_cast<const unsigned char*>(text); }

TEST(Eu16String, IsMadeOfCodePoints) {
  const std::pair<unsigned, std::u16string> kCases[] = {
      {0, u""},        {0xD800, {0xD800}}, {0xFFFF, u"\uFFFF"}, {0x10000, u"\U00010000"}, {0x10FFFF, u"\U0010FFFF"},
      {0x110000, u""}, {0x110041, u"A"},
  };
  for (const auto& [code_point, text] : kCases) EXPECT_EQ(Text(eu16string(code_point)), text) << code_point;
  EXPECT_EQ(Text(eu16string(0x41)), u"A");  // an int, not a char
}

TEST(Eu16String, DecodesTheApplicationsTextAndUtf8) {
  EXPECT_EQ(Text("caf\x8E\xDB"), u"caf\u00E9\u20AC");
  EXPECT_EQ(Text(eu16string('\x8E')), u"\u00E9");
  EXPECT_EQ(Text(eu16string('\0')), u"");
  EXPECT_EQ(Text(eu16string(Utf8("\xC3\xA9\xF0\x9F\x98\x80"))), u"\u00E9\U0001F600");
  EXPECT_EQ(Text(eu16string("a\1b")), u"a");  // ends before a decoded U+0000
  EXPECT_EQ(Text(IntToEu16Str(-9223372036854775807L - 1)), u"-9223372036854775808");
  for (const char* bad : {"a\xC3", "\x80", "\xED\xA0\x80", "\xC0\x80"}) EXPECT_TRUE(eu16string(Utf8(bad)).empty());
}

TEST(Eu16String, EncodesAndPutsQuestionMarks) {
  std::string text = "old";
  eu16string(Utf8("a\u4E2D\U0001F600z")).GetStdString(text);
  EXPECT_EQ(text, "a???z");  // one for each unit
  eu16string cut("ab");
  cut += static_cast<unsigned short>(0);
  cut += u'c';
  cut.GetStdString(text);
  EXPECT_EQ(text, "ab");
}

TEST(Eu16String, CountsPositionsFromOne) {
  eu16string text("abcdef");
  const eu16string& constant = text;
  for (const int outside : {-2147483647 - 1, 0, 7}) EXPECT_EQ(constant.AnsiCharAtIndex(outside), ' ');
  EXPECT_EQ(constant.AnsiCharAtIndex(6), 'f');
  EXPECT_EQ(&text.AnsiCharAtIndex(7), &text[0]);
  EXPECT_EQ(&text.AnsiCharAtIndex(2), &text[1]);
  EXPECT_EQ(eu16string().AnsiCharAtIndex(1), 0);
  EXPECT_EQ(text.AnsiPos("cd"), 3);
  EXPECT_EQ(eu16string().AnsiPos(""), 0);
  EXPECT_EQ(Text(text.AnsiSetLength(9).AnsiSetLength(5)), u"abcde");
}

TEST(Eu16String, ReadsNumbersAsThePlatformDoes) {
  EXPECT_EQ(StrToIntDef("x", 7), 0);
  EXPECT_EQ(StrToIntDef("", 7), 7);
  EXPECT_EQ(StrToIntDef(" -42x", 7), -42);
  EXPECT_EQ(StrToIntDef("99999999999", 7), 2147483647);
}

TEST(Eu16String, WithoutMemoryComesOutEmpty) {
  const eu16string number("42");
  g_out_of_memory = true;
  std::string text = "old";
  number.GetStdString(text);
  EXPECT_EQ(text, "");
  EXPECT_EQ(StrToIntDef(number, 7), 7);
  unsigned short formatted[] = {1, 1};
  EXPECT_EQ(sx_sprintf(formatted, 2, number.c_str()), 0);
  EXPECT_EQ(formatted[0], 0);
  g_out_of_memory = false;
}

// The base's own functions work on units that its traits never saw before.
TEST(Eu16String, IsAStandardString) {
  static_assert(std::has_virtual_destructor_v<eu16string>);
  eu16string text("abcabc");
  text.insert(1, text);  // overlapping moves
  EXPECT_EQ(Text(text), u"aabcabcbcabc");
  eu16string high(0xFFFFu);
  EXPECT_LT(eu16string(0x41u), high);
  text.append(3, 0x266D).erase(0, 12);
  EXPECT_EQ(Text(text), u"\u266D\u266D\u266D");
}

}  // namespace
