#include "SokExtShared/LIB/text/caret_commands.h"

#include <gtest/gtest.h>

#include "tests/text/units.h"

namespace {

std::u16string Stripped(std::u16string_view text) {
  std::vector<unsigned short> units = Units(text);
  txt_strip_carets(units.data());
  return Text(units.data());
}

struct CaretCase {
  const char16_t* text;
  const char16_t* stripped;
  const char16_t* font = u"-";  // "-": not touched
  const char16_t* size = u"-";
  const char16_t* efx = u"";
  unsigned styles = 0;
};
constexpr CaretCase kCaretCases[] = {
    {u"", u""},
    {u"^font(Times)^size(12)^efx(bold)B^flat() major", u"Bb major", u"Times", u"12", u"bold", 1},
    {u"B^font(Times)^size(12)^efx(bold)^sharp()x", u"B#x"},
    {u"a^", u"a"},
    {u"a^^b", u"a"},
    {u"a^font b)c", u"ac"},
    {u"^font(Tim", u"", u"Tim"},
    {u"^font(Times (bold))X", u")X", u"Times (bold"},
    {u"^fontx(y)^siz(2)z", u"z"},
    {u"\r\n^flat()^size(7)x", u"  bx", u"-", u"7"},  // breaks and flats keep the opening going
    {u"\t^size(7)x", u"\tx"},                        // a tab ends it
    {u"^size(7)^size(8)x", u"x", u"-", u"8"},
    {u"^font(a^b\n)x", u"x", u"a^b\n"},
    {u"^efx(bolditalic)", u"", u"-", u"-", u"bolditalic", 3},
    {u"^efx(bold)x", u"x", u"-", u"-", u"bold", 1},                   // the style of the text before is forgotten
    {u"^efx(underline)^efx(plain)x", u"x", u"-", u"-", u"plain", 4},  // flags are only added
    {u"^flat((x)y", u"bby"},                                          // the keyword is tried at every parenthesis
    {u"^flat(((x)y", u"bby"},                      // the second letter has overwritten the keyword's first
    {u"^flat()^sharp((((x)y", u"b####y"},          // room enough before the keyword
    {u"\u015E\u025E^size(9)x", u"\u015E\u025Ex"},  // no carets, for all their low bytes
};
TEST(CaretCommands, AreStrippedAndTheOpeningOnesKept) {
  for (const CaretCase& c : kCaretCases) {
    SCOPED_TRACE(testing::Message() << "case " << &c - kCaretCases);
    ucaretfont[0] = ucaretsize[0] = '-';
    ucaretfont[1] = ucaretsize[1] = 0;
    EXPECT_EQ(Stripped(c.text), c.stripped);
    EXPECT_EQ(Text(ucaretfont), c.font);
    EXPECT_EQ(Text(ucaretsize), c.size);
    EXPECT_EQ(Text(ucaretefx), c.efx);
    EXPECT_EQ(uicaretefx, c.styles);
  }
}

// The captures lie side by side in memory, so a capture one unit too long shows in the sanitizer or in its neighbour.
TEST(CaretCommands, CutLongArguments) {
  for (const std::size_t length : {14u, 15u, 16u, 48u, 49u, 50u, 54u, 55u, 56u, 500u}) {
    const std::u16string argument(length, u'x');
    for (const char16_t* end : {u")", u""}) {
      EXPECT_EQ(Stripped(u"^font(" + argument + end), u"");
      EXPECT_EQ(Stripped(u"^size(" + argument + end), u"");
      EXPECT_EQ(Stripped(u"^efx(" + argument + end), u"");
      EXPECT_EQ(Text(ucaretfont), argument.substr(0, 55));
      EXPECT_EQ(Text(ucaretsize), argument.substr(0, 15));
      EXPECT_EQ(Text(ucaretefx), argument.substr(0, 49));
    }
  }
}

}  // namespace
