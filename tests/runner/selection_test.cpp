#include "host/runner/run/selection.h"

#include <gtest/gtest.h>

#include "host/engine/host_text.h"
#include "host/errors.h"
#include "host/runner/report/text.h"

namespace {

using sok::NumberRange;

TEST(Selection, RangesAreReadStrictly) {
  const std::pair<const char*, std::vector<NumberRange>> kGood[] = {
      {"7", {{7, 7}}},
      {"3-8,12", {{3, 8}, {12, 12}}},
      {" 2 , 1", {{2, 2}, {1, 1}}},
      {"5-", {{5, 32767, true}}},
      {"-4,32767", {{1, 4}, {32767, 32767}}},
  };
  for (const auto& [text, ranges] : kGood) EXPECT_EQ(sok::ParseRanges(text, "--x"), ranges) << text;
  for (const char* const bad :
       {"", ",", "1,", "-", "0", "-0", "1--2", "1-2-3", "4-3", "32768", "+1", "1.5", "x", "1 2"}) {
    EXPECT_THROW(sok::ParseRanges(bad, "--x"), sok::UsageError) << bad;
  }
}

TEST(Selection, LayersCountFromOne) {
  const sok::HiddenLayer hidden = sok::ParseHiddenLayer("2:1,3-4");
  EXPECT_EQ(hidden.layer, 1);
  EXPECT_EQ(hidden.staves, (std::vector<NumberRange>{{1, 1}, {3, 4}}));
  for (const char* const bad : {"0", "5", "", ":", "1:", "1:x", "1,2"}) {
    EXPECT_THROW(sok::ParseHiddenLayer(bad), sok::UsageError) << bad;
  }
}

// The widths that columns are made of, and texts as extensions hand them over.
TEST(Text, CountsCharactersAndMendsSurrogates) {
  EXPECT_EQ(sok::DisplayWidth("Flûte"), 5u);
  EXPECT_EQ(sok::DisplayWidth("Flu\xCC\x82te"), 5u);
  const unsigned short units[] = {'a', 0xD834, 0xDD1E, 0xD834, 'b', 0xDD1E, 0, 'c'};
  EXPECT_EQ(sok::Utf8FromUtf16(units, 8), "a\U0001D11E?b?");
  EXPECT_EQ(sok::Utf8FromUtf16(units, 2), "a?");
}

}  // namespace
