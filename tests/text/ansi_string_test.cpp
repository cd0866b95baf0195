#include "SokExtShared/LIB/strings/ansi_string.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "SokExtShared/LIB/strings/eu16string.h"
#include "SokExtShared/LIB/strings/string_list.h"

namespace {

using _AStrings::IntToStr;
using _AStrings::StrToIntDef;

constexpr unsigned char kPascal[] = {5, 'a', 'b', 0, 'c', 'd'};

// Each constructor is the one of its argument's very type.
TEST(AnsiString, IsMadeOfTextsBytesAndNumbers) {
  EXPECT_STREQ(AnsiString(65).c_str(), "65");
  EXPECT_STREQ(AnsiString('A').c_str(), "A");
  EXPECT_EQ(AnsiString('\0').Length(), 1);
  EXPECT_STREQ(AnsiString(static_cast<short>(-1)).c_str(), "-1");
  EXPECT_STREQ(AnsiString(static_cast<unsigned short>(-1)).c_str(), "65535");
  EXPECT_STREQ(AnsiString(0xFFFFFFFFFFFFFFFFul).c_str(), "18446744073709551615");
  EXPECT_STREQ(AnsiString(kPascal).c_str(), "\5ab");  // no Pascal string for this one
  EXPECT_STREQ(p2ansi(kPascal).c_str(), "ab");
  EXPECT_STREQ(("a" + AnsiString("b") + 5 + 'c').c_str(), "ab5c");
}

TEST(AnsiString, ComparesBytes) {
  const AnsiString abc = "abc";
  EXPECT_TRUE(abc == "abc" && abc != "abd" && abc < "abcd" && abc > "ABC" && abc <= "abc" && abc >= "abc");
  EXPECT_TRUE(AnsiString("\xFF") > "a");
  EXPECT_FALSE(AnsiString("a") == AnsiString("a") + '\0');
  EXPECT_EQ(abc.AnsiCompare("ABC"), 0);
  EXPECT_EQ(abc.AnsiCompare("ABCD"), -1);
  EXPECT_GT(abc.AnsiCompareIC("ABC"), 0);
  EXPECT_STREQ(AnsiString("a\xE9z{").UpperCase().c_str(), "A\xE9Z{");
}

struct PartCase {
  const char* text;
  int position, count;
  const char* part;     // SubString
  const char* remains;  // Delete
};
constexpr PartCase kPartCases[] = {
    {"abcdef", 2, 100, "bcdef", "a"},
    {"abcdef", 5, 1, "e", "abcdf"},
    {"abcdef", 6, std::numeric_limits<int>::max(), "f", "abcde"},
    {"abcdef", 7, 1, "", "abcdef"},
    {"abcdef", 1, 0, "", "abcdef"},
    {"abcdef", 1, 2, "ab", "cdef"},
    {"abcdef", 0, 2, "ab", "abcdef"},   // below 1: the start for SubString, nothing for Delete
    {"abcdef", -5, 2, "ab", "abcdef"},  // as unsigned far beyond the end for Delete
    {"", 1, 1, "", ""},
};
TEST(BothStrings, CutPartsByPositionsFromOne) {
  for (const PartCase& c : kPartCases) {
    SCOPED_TRACE(testing::Message() << "case " << &c - kPartCases);
    AnsiString text = c.text;
    EXPECT_STREQ(text.SubString(c.position, c.count).c_str(), c.part);
    EXPECT_STREQ(text.Delete(static_cast<unsigned>(c.position), c.count).c_str(), c.remains);
    eu16string wide(c.text);
    EXPECT_EQ(wide.AnsiSubString(c.position, c.count), eu16string(c.part));
    EXPECT_EQ(wide.AnsiDelete(static_cast<unsigned>(c.position), c.count), eu16string(c.remains));
  }
}

TEST(AnsiString, RepairsPositions) {
  AnsiString text = "abc";
  text[0] = 'x';
  text[4] += 1;
  EXPECT_EQ(text[3], 'c');
  EXPECT_STREQ(text.c_str(), "ybc");
  AnsiString empty;
  EXPECT_EQ(empty[7], ' ');
  EXPECT_EQ(empty.Length(), 1);
}

TEST(AnsiString, Edits) {
  AnsiString text = "cd";
  EXPECT_STREQ(text.Insert("ab", -3).Insert("ef", 5).Insert("-", 3).c_str(), "ab-cdef");
  EXPECT_THROW(text.Insert("x", 9), std::out_of_range);
  EXPECT_STREQ(text.SetLength(9).SetLength(2).c_str(), "ab");
  const AnsiString spaced = "  x\t ";
  EXPECT_TRUE(spaced.Trim() == "x\t" && spaced.TrimLeft() == "x\t " && spaced.TrimRight() == "  x\t");
  EXPECT_TRUE(AnsiString("   ").Trim().IsEmpty() && AnsiString("   ").TrimLeft().IsEmpty());
  EXPECT_EQ(AnsiString("abcdef").Pos("cd"), 3);
  EXPECT_EQ(text.Pos(""), 1);
  EXPECT_EQ(AnsiString().Pos(""), 0);
}

TEST(AnsiString, TurnsNumbersBothWays) {
  EXPECT_EQ(StrToIntDef(" 42x", 7), 42);
  EXPECT_EQ(StrToIntDef("4294967297", 7), 1);  // a long, cut to 32 bits
  for (const char* none : {"x", "", "-", " "}) EXPECT_EQ(StrToIntDef(none, 7), 7) << none;
  EXPECT_STREQ(IntToStr(std::numeric_limits<long>::min()).c_str(), "-92233720368547758");
}

TEST(AnsiString, HandsOutTextsInARingOfTen) {
  _AStrings::c_str_buf_num = 0;
  const AnsiString text = "abc";
  const char* const first = text.c_str();
  EXPECT_EQ(first, _AStrings::c_str_buf_rot[1]);
  for (int i = 2; i <= 10; ++i) EXPECT_EQ(text.c_str(), _AStrings::c_str_buf_rot[i % 10]);
  AnsiString longer;
  for (int i = 0; i < 3000; ++i) longer += 'x';
  EXPECT_EQ(longer.c_str(), first);
  EXPECT_EQ(std::string(first), std::string(2047, 'x'));
}

TEST(StringList, KeepsItsCount) {
  TStringList list;
  EXPECT_EQ(list.Add("a"), 1);
  EXPECT_EQ(list.Add("b"), 2);
  list.Delete(1);
  EXPECT_TRUE(list.Count() == 1 && list[0] == "a");
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
}

}  // namespace
