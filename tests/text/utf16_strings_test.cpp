#include "SokExtShared/LIB/strings/utf16_strings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "SokExtShared/LIB/strings/narrow_strings.h"
#include "SokExtShared/LIB/strings/utf16_format.h"
#include "tests/text/units.h"

namespace {

int Sign(int order) { return (order > 0) - (order < 0); }

// Where `at` stands in `text`, -1 for null.
long Place(const std::vector<unsigned short>& text, const unsigned short* at) {
  return at == nullptr ? -1 : at - text.data();
}

long ModelPlace(std::size_t place) { return place == std::u16string::npos ? -1 : static_cast<long>(place); }

// Random texts of few different units, of lengths around the functions' strides, beside the standard string.
TEST(Utf16Strings, AgreeWithTheStandardString) {
  std::mt19937 random(4);
  const auto text_of = [&](std::size_t most) {
    static constexpr char16_t kUnits[] = {u'a', u'b', u'\u0100', u'\uFFFF', 0xD800};
    std::u16string text(random() % (most + 1), u'a');
    for (char16_t& unit : text) unit = random() % 3 != 0 ? u'a' : kUnits[random() % std::size(kUnits)];
    return text;
  };
  for (int round = 0; round < 20000; ++round) {
    const std::u16string model = text_of(40);
    std::u16string other = random() % 2 != 0 ? model.substr(0, random() % (model.size() + 1)) : text_of(4);
    if (!other.empty() && random() % 2 != 0) other[random() % other.size()] = u'\uFFFE';
    const auto text = Units(model);
    const auto part = Units(other);
    const unsigned long count = random() % 44;
    SCOPED_TRACE(testing::Message() << "round " << round << ", count " << count);

    ASSERT_EQ(sx_strlen(text.data()), model.size());
    ASSERT_EQ(sx_strcmp(text.data(), part.data()), Sign(model.compare(other)));
    ASSERT_EQ(sx_strncmp(text.data(), part.data(), count),
              Sign(model.substr(0, count).compare(other.substr(0, count))));
    ASSERT_EQ(Place(text, sx_strchr(text.data(), part[0])), ModelPlace((model + u'\0').find(char16_t(part[0]))));
    ASSERT_EQ(Place(text, sx_strstr(text.data(), part.data())), ModelPlace(model.find(other)));

    std::vector<unsigned short> copy(count, 7);
    sx_strncpy(copy.data(), text.data(), count);
    std::u16string expected = model.substr(0, count);
    expected.resize(count);
    ASSERT_TRUE(std::equal(copy.begin(), copy.end(), expected.begin(), expected.end()));
  }
}

// A capacity cuts and always leaves a terminator; nothing behind it is touched.
TEST(Utf16Strings, CopiesStayInsideTheirCapacity) {
  for (unsigned long capacity = 0; capacity <= 8; ++capacity) {
    SCOPED_TRACE(testing::Message() << "capacity " << capacity);
    const std::u16string whole = u"abcdef";
    std::vector<unsigned short> copied(capacity);
    sx_strcpy(copied.data(), capacity, Units(whole).data());
    std::vector<unsigned short> joined(capacity);
    if (capacity > 2) sx_strcpy(joined.data(), Units(u"ab").data());
    sx_strcat(joined.data(), capacity, Units(u"cdef").data());
    if (capacity == 0) continue;
    EXPECT_EQ(Text(copied.data()), whole.substr(0, capacity - 1));
    EXPECT_EQ(Text(joined.data()), capacity > 2 ? whole.substr(0, capacity - 1) : whole.substr(2, capacity - 1));
  }
  std::vector<unsigned short> full = {'a', 'b', 'c'};  // no terminator within the capacity
  sx_strcat(full.data(), 3, Units(u"x").data());
  EXPECT_EQ(Text(full.data()), u"ab");
}

TEST(Utf16Format, StoresWhatFitsAndAnswersHowMuch) {
  std::vector<unsigned short> to(4, 7);
  EXPECT_EQ(sx_sprintf(to.data(), 4, Units(u"%d").data(), 1234567890), 3);
  EXPECT_EQ(Text(to.data()), u"123");
  std::vector<unsigned short> line(40);
  EXPECT_EQ(sx_sprintf(line.data(), 40, Units(u"\u266D%S %s/%u").data(), Units(u"\u03A9x").data(), "ab", 0xFFFFFFFFu),
            17);
  EXPECT_EQ(Text(line.data()), u"\u266D\u03A9x ab/4294967295");
}

struct NarrowCase {
  const char *left, *right;
  int whole;
  unsigned long count;
  int counted;
};
constexpr NarrowCase kNarrowCases[] = {
    {"abc", "ABD", -1, 2, 0},  {"abc", "ABC", 0, 0, 0}, {"_", "a", 1, 1, 1},  // folded to upper case, not to lower
    {"\xE9", "a", -1, 1, -1},                                                 // negative, and so before the letters
    {"\xFF", "\xFE", 1, 1, 1},  // no other case; -1 looks like the end of a file
};
TEST(NarrowStrings, FoldCaseAndCompareSigned) {
  for (const NarrowCase& c : kNarrowCases) {
    SCOPED_TRACE(testing::Message() << "case " << &c - kNarrowCases);
    EXPECT_EQ(stricmp(c.left, c.right), c.whole);
    EXPECT_EQ(stricmp(c.right, c.left), -c.whole);
    EXPECT_EQ(strnicmp(c.left, c.right, c.count), c.counted);
  }
  char text[12];
  num2str(-2147483647 - 1, text);
  EXPECT_STREQ(text, "-2147483648");
}

}  // namespace
