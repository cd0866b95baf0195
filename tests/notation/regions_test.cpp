// Points, regions and the search for the last record, against a host whose durations and records the test sets.
#include "SokExtShared/LIB/notation/regions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "SokExtShared/LIB/notation/last_item.h"
#include "tests/support/test_host.h"

namespace {

TEST(Regions, PointsMoveToTheGlobalListWhateverComesOfIt) {
  TestHost host;
  host.AddScore(5, 3);
  host.document.SetStaffList(7, {4, 2});
  struct Case {
    unsigned short list;
    short slot, new_slot;
    bool translated;
  };
  for (const Case& c : {Case{7, 1, 4, true}, {7, 3, 0, false}, {9, 1, 0, false}, {0, -3, -3, true}}) {
    EMUSICPOINT point{c.list, c.slot, 2, 70000};
    EXPECT_EQ(TranslateMusicPointToGlobalStaffList(point), c.translated) << c.list << "/" << c.slot;
    EXPECT_TRUE(MusicPointsEqual(point, {0, c.new_slot, 2, 70000})) << c.list << "/" << c.slot;
  }
  EREGION region{{9, 1, 1, 0}, {7, 1, 1, 0}};
  EXPECT_FALSE(TranslateRegionToGlobalStaffList(region));
  EXPECT_TRUE(MusicPointsEqual(region.end, {7, 1, 1, 0}));  // not touched
  for (EMUSICPOINT other : {EMUSICPOINT{1, 1, 1, 0}, {7, 5, 1, 0}, {7, 1, 2, 0}, {7, 1, 1, 1}}) {
    EXPECT_FALSE(MusicPointsEqual(region.end, other));
  }
}

// The rescaling wraps at 32 bits and truncates toward zero; done here in 64 bits and cut.
TEST(Regions, InsideOrOutsideOverTheWholeRangeOfPositions) {
  TestHost host;
  std::mt19937 random(5);
  std::map<std::string, int> durations;  // by the arguments of the call
  host.after = [&](sok::HostCall& call) { call.result = durations.at(call.arguments); };
  constexpr int kDurations[] = {4096, 3072, 0, 1, 5, -1, 0x7FFFFFFF, -0x7FFFFFFF - 1};
  const auto below = [&](unsigned int limit) { return static_cast<int>(random() % limit); };
  for (int round = 0; round < 20000; ++round) {
    const int measure = below(6), staff = below(3);
    const int position = round % 2 != 0 ? static_cast<int>(random()) : below(5000) - 100;
    const EREGION region{{1, 1, static_cast<short>(below(6)), below(4000)},
                         {2, 2, static_cast<short>(below(6)), below(4000)}};
    const int score_length = kDurations[below(8)], staff_length = kDurations[below(8)];
    durations = {{std::to_string(staff) + " " + std::to_string(measure), staff_length},
                 {"0 " + std::to_string(measure), score_length}};
    long long place = position;
    if (staff != 0) {
      place = static_cast<int>(place * (score_length == 0 ? 4096 : score_length) & 0xFFFFFFFF);
      place = static_cast<int>(place / (staff_length == 0 ? 4096 : staff_length) & 0xFFFFFFFF);
    }
    const std::pair point(measure, std::max(place, 0LL));
    const auto at = [](const EMUSICPOINT& p) { return std::pair<int, long long>(p.measure + 0, p.position + 0); };
    ASSERT_EQ(InRegion(measure, position, region, staff), at(region.start) <= point && point <= at(region.end))
        << round;
  }
}

// Whatever the gaps and strides, the search ends at the highest number when there is a record to start from.
TEST(LastItem, FoundFromAnyStartWithAnyStride) {
  constexpr unsigned int kTag = 0x6F744D78;
  TestHost host;
  std::mt19937 random(6);
  for (int round = 0; round < 300; ++round) {
    host.document.records = {};
    host.calls.clear();
    unsigned short first = 0, highest = 0;
    for (int i = 0; i < 12; ++i) {
      EDataID id{};
      first = id.other.cmper = static_cast<unsigned short>(1 + random() % (round % 2 != 0 ? 60 : 0xFFFF));
      highest = std::max(highest, first);
      const char bytes[30] = {};
      host.document.records.Save(kTag, id, bytes, i % 2 != 0 ? 30 : 12);
    }
    constexpr short kSteps[] = {100, 7, 0, -1, 0x7FFF, 300};
    char buffer[12];  // larger records must not be read past its end
    const short step = kSteps[random() % std::size(kSteps)];
    EXPECT_EQ(FindLastItem(kTag, sizeof buffer, step, buffer, first), static_cast<short>(highest))
        << first << "+" << step;
    EXPECT_LT(host.calls.size(), 20000u);
    EXPECT_EQ(FindLastItem(kTag, sizeof buffer, step, buffer, 0), 0);
  }
}

}  // namespace
