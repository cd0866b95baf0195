#include "tests/platform/support.h"

namespace {

template <typename... Arguments>
std::string Format(std::u16string_view format, Arguments... arguments) {
  const OwnedString made(CFStringCreateWithFormat(nullptr, nullptr, String(format).get(), arguments...));
  return Ascii(made.get());
}

// An argument too many or too few taken from the list shifts all that follow.
TEST(Format, ArgumentsByNumber) {
  EXPECT_EQ(Format(u"%2$d", 1, 2), "1");  // a number never used is not in the list
  EXPECT_EQ(Format(u"%1$s %3$s", "a", "b", "c"), "a b");
  EXPECT_EQ(Format(u"%3$s %1$s %2$s", "a", "b", "c"), "c a b");
  EXPECT_EQ(Format(u"%1$d %d %d", 1, 2), "1 1 2");
  EXPECT_EQ(Format(u"%0$d", 1), "0d");
  EXPECT_EQ(Format(u"a%99$d", 1), "");
  EXPECT_EQ(Format(u"%y%*y%d", 3), "y*3");
  EXPECT_EQ(Format(u"%n%d%%%d", nullptr, 1, 2), "1%2");
  EXPECT_EQ(Format(u"%2$ld %1$d %3$s", 1, 5000000000L, "c"), "5000000000 1 c");
}

TEST(Format, WidthsAndPrecisions) {
  EXPECT_EQ(Format(u"%2147483648d", 1), "(null)");
  EXPECT_EQ(Format(u"%.99999999999999999999s", "a"), "(null)");
  EXPECT_EQ(Format(u"[%*s|%-4s|%04s]", -6, "a", "b", "c"), "[a|b   |   c]");
  EXPECT_EQ(Format(u"[%.s|%.0s|%.*s]", "ab", "cd", -1, "ef"), "[ab||ef]");
  EXPECT_EQ(Format(u"[%9s|%.1@|%5C]", nullptr, nullptr, 'x'), "[(null)|(null)|x]");
  EXPECT_EQ(Format(u"[%-4d|%-04d|%05.2d|%*d|%.*d]", 1, 2, 3, -3, 4, -1, 5), "[1   |2   |   03|4  |5]");
  EXPECT_EQ(Format(u"[%4c|%c|%-3c]", 'x', 0, 'y'), "[   x||y  ]");
  EXPECT_EQ(Format(u"[%p|%5p]", nullptr, nullptr), "[0x0|  0x0]");
  EXPECT_EQ(Format(u"[%10p]", reinterpret_cast<void*>(0xAB)), "[      0xab]");
}

TEST(Format, SizesAndDescriptions) {
  EXPECT_EQ(Format(u"%hd %hu %hhd %lld %Lf", 70000, -1, 300, -5L, 0.5L), "4464 65535 44 -5 0.500000");
  const double tenth = 0.1;
  const Owned<CFNumberRef> number(CFNumberCreate(nullptr, kCFNumberDoubleType, &tenth));
  EXPECT_EQ(Format(u"%@ %@ %@", number.get(), kCFBooleanFalse, kCFNull), "0.10000000000000001 false null");
  EXPECT_EQ(Format(u"%@", Url("/a b/\xC3\xA9").get()), "file:///a%20b/%C3%A9/");
}

// %P and %s are Mac Roman whatever the locale; a constant string stays the same object however often released.
TEST(Format, EightBitText) {
  const OwnedString made(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%P%s"), "\2\x8E!?", "\xDB"));
  EXPECT_EQ(Units(made.get()), u"\u00E9!\u20AC");
  const CFStringRef constant = CFSTR("once");
  for (int i = 0; i < 3; ++i) CFRelease(constant);
  EXPECT_EQ(CFSTR("once"), constant);
  EXPECT_EQ(Units(constant), u"once");
  EXPECT_DEATH(CFRelease(nullptr), "CFRelease was called with null");
  EXPECT_DEATH(CFRetain(nullptr), "CFRetain was called with null");
}

}  // namespace
