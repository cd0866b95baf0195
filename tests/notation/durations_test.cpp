// Durations and diagnostics: formulas against arithmetic done in another way.
#include "SokExtShared/LIB/notation/durations.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "SokExtShared/LIB/notation/diagnostics.h"

namespace {

// Without the bias the logarithms of some powers of two truncate to one less.
TEST(Durations, LogarithmsDotsAndBeatsOfEveryLength) {
  for (int n = 1; n <= 1 << 18; ++n) {
    const auto bits = static_cast<unsigned int>(n);
    ASSERT_EQ(DotsBase(n), static_cast<int>(std::bit_floor(bits))) << n;
    ASSERT_EQ(1 << IntLog2(n), DotsBase(n)) << n;
    int count = 0;
    for (int rest = n; rest != 0; rest /= 2) count += rest % 2;
    ASSERT_EQ(CountDots(n), count - 1) << n;
    int num = 0, den = 0;
    CalcNumDen(n, num, den);
    ASSERT_EQ(num * den, n);
    ASSERT_TRUE(den == 2048 || (num % 2 != 0 && den < 2048)) << n;
  }
  for (int power = 18; power <= 30; ++power) EXPECT_EQ(IntLog2(1 << power), power);
  EXPECT_EQ(IntLog2((1 << 30) - 1), 30);
  EXPECT_EQ(CountDots((1 << 30) - 1), 29);
  EXPECT_EQ(DotsBase(std::numeric_limits<int>::max()), 1 << 30);
  for (const int none : {0, -1, std::numeric_limits<int>::min()}) {
    int num = 7, den = 7;
    CalcNumDen(none, num, den);
    EXPECT_TRUE(IntLog2(none) == 0 && DotsBase(none) == 0 && CountDots(none) == 0 && num == 0 && den == 1) << none;
  }
}

TEST(Durations, TimeSignaturesFromAGivenBeat) {
  struct Case {
    int duration;
    short den_in, num, den;
  };
  for (const Case& c : {Case{3072, 2048, 3, 1024},
                        {4096, 1536, 4, 1024},
                        {4608, 1536, 3, 1536},
                        {8192, 4096, 2, 4096},
                        {3584, 0x7FFF, 7, 512},
                        {1023, 1024, 1023, 1},
                        {5, 1, 5, 1},
                        {0, 1024, -9, 1024},
                        {1024, 0, -9, 0},
                        {1024, -512, -9, -512}}) {
    short num = -9, den = c.den_in;
    FindTimeSignature(c.duration, num, den);
    EXPECT_TRUE(num == c.num && den == c.den) << c.duration << "/" << c.den_in << ": " << num << " * " << den;
  }
}

TEST(Diagnostics, PointersByTheirLowHalfAndTagsByHalves) {
  for (unsigned long byte = 0; byte < 256; ++byte) {
    EXPECT_FALSE(ValidPointer(reinterpret_cast<void*>(byte * 0x01010101 | 0x1200000000))) << byte;
    for (const int bit : {0, 8, 16, 24}) {
      EXPECT_TRUE(ValidPointer(reinterpret_cast<void*>(byte * 0x01010101 ^ 1ul << bit))) << byte;
    }
  }
  EXPECT_FALSE(ValidPointer(nullptr));
  EXPECT_STREQ(TagToString(0x41FE4344), "CDA\xFE");
}

}  // namespace
