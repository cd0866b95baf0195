// Durations, diagnostics and record comparisons: formulas against arithmetic done in another way.
#include "SokExtShared/LIB/notation/durations.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

#include "SokExtShared/LIB/notation/definition_records.h"
#include "SokExtShared/LIB/notation/diagnostics.h"

namespace {

constexpr int kMax = std::numeric_limits<int>::max();

int FloorLog2(int n) { return static_cast<int>(std::bit_width(static_cast<unsigned int>(n))) - 1; }

// Without the bias the logarithms of some powers of two truncate to one less.
TEST(Durations, LogarithmsAndDotsOfEveryLength) {
  for (int n = 1; n <= 1 << 20; ++n) {
    ASSERT_EQ(IntLog2(n), FloorLog2(n)) << n;
    ASSERT_EQ(DotsBase(n), 1 << FloorLog2(n)) << n;
    int bits = 0;
    for (int rest = n; rest != 0; rest /= 2) bits += rest % 2;
    ASSERT_EQ(CountDots(n), bits - 1) << n;
  }
  for (int power = 20; power <= 30; ++power) {
    for (int distance = -3; distance <= 3; ++distance) {
      const int n = (1 << power) + distance;
      const bool biased_up = power == 28 && distance == -1;
      if (power <= 28) {
        EXPECT_EQ(IntLog2(n), biased_up ? power : FloorLog2(n)) << n;
      }
      EXPECT_EQ(CountDots(n), std::popcount(static_cast<unsigned int>(n)) - 1) << n;
    }
  }
}

TEST(Durations, BiasAndEndsOfTheRange) {
  EXPECT_EQ(IntLog2((1 << 30) - 1), 30);
  EXPECT_EQ(IntLog2(kMax), 31);
  EXPECT_EQ(DotsBase(kMax), 1 << 30);
  for (const int none : {0, -1, -kMax - 1}) {
    EXPECT_EQ(IntLog2(none), 0);
    EXPECT_EQ(DotsBase(none), 0);
    EXPECT_EQ(CountDots(none), 0);
    int num = 7, den = 7;
    CalcNumDen(none, num, den);
    EXPECT_EQ(num, 0);
    EXPECT_EQ(den, 1);
  }
}

TEST(Durations, BeatsAreTheLongestPowersOfTwoThatDivide) {
  for (int duration = 1; duration <= 1 << 16; ++duration) {
    int num = 0, den = 0;
    CalcNumDen(duration, num, den);
    ASSERT_EQ(num * den, duration);
    ASSERT_TRUE(std::has_single_bit(static_cast<unsigned int>(den)) && den <= 2048) << duration;
    ASSERT_TRUE(num % 2 != 0 || den == 2048) << duration;
  }
}

TEST(Durations, TimeSignaturesFromAGivenBeat) {
  struct Case {
    int duration;
    short den_in, num, den;
  };
  constexpr short kShortMax = std::numeric_limits<short>::max();
  for (const Case& c :
       {Case{3072, 2048, 3, 1024}, Case{4096, 1536, 4, 1024}, Case{4608, 1536, 3, 1536}, Case{8192, 4096, 2, 4096},
        Case{1, 2048, 1, 1}, Case{3584, kShortMax, 7, 512}, Case{1023, 1024, 1023, 1}, Case{0, 1024, -9, 1024},
        Case{1024, 0, -9, 0}, Case{1024, -512, -9, -512}, Case{-1024, 512, -9, 512}}) {
    short num = -9, den = c.den_in;
    FindTimeSignature(c.duration, num, den);
    EXPECT_EQ(num, c.num) << c.duration << "/" << c.den_in;
    EXPECT_EQ(den, c.den) << c.duration << "/" << c.den_in;
  }
}

TEST(Diagnostics, PointersByTheirLowHalfAndTagsByHalves) {
  for (int byte = 0; byte < 256; ++byte) {
    const auto repeated = static_cast<std::uintptr_t>(byte) * 0x01010101u;
    EXPECT_FALSE(ValidPointer(reinterpret_cast<void*>(repeated | 0x1200000000))) << byte;
    for (const int shift : {0, 8, 16, 24}) {
      EXPECT_TRUE(ValidPointer(reinterpret_cast<void*>(repeated ^ (std::uintptr_t{1} << shift)))) << byte;
    }
  }
  EXPECT_FALSE(ValidPointer(nullptr));
  EXPECT_STREQ(TagToString(0x41424344), "CDAB");
  EXPECT_STREQ(TagToString(static_cast<int>(0xFFFEFDFC)), "\xFD\xFC\xFF\xFE");
}

// Changes one word after the other; exactly those of the rule may be noticed.
template <typename Record>
void ExpectComparedWords(bool (*equal)(Record, Record), std::initializer_list<size_t> offsets) {
  Record record;
  auto* const bytes = reinterpret_cast<unsigned char*>(&record);
  std::fill_n(bytes, sizeof record, static_cast<unsigned char>(0x5A));
  for (size_t changed = 0; changed < sizeof record; ++changed) {
    Record other = record;
    reinterpret_cast<unsigned char*>(&other)[changed] ^= 0x80;
    bool compared = false;
    for (const size_t offset : offsets) compared |= changed / 2 == offset / 2;
    EXPECT_EQ(equal(record, other), !compared) << changed;
  }
  EXPECT_TRUE(equal(record, record));
}

TEST(DefinitionRecords, CompareTheWordsThatCount) {
  ExpectComparedWords<EDTChordSuffix2012>([](auto a, auto b) { return ChordSuffixEqual(a, b, false); },
                                          {0, 2, 4, 6, 8, 10, 12, 14});
  ExpectComparedWords<EDTChordSuffix2012>([](auto a, auto b) { return ChordSuffixEqual(a, b, true); },
                                          {0, 2, 6, 8, 10, 12, 14});
  ExpectComparedWords<EDTChord2010>(ChordEquals, {0, 2, 4, 18});
  ExpectComparedWords<EDTInstDefinition>(InstDefEquals, {0, 2, 4, 6});
  ExpectComparedWords<EDTGeneric>(GenericEquals, {0, 2, 4, 6, 8, 10});
}

}  // namespace
