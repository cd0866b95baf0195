// Points, regions and the search for the last record, against a host whose durations and records the test sets.
#include "SokExtShared/LIB/notation/regions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

#include "SokExtShared/LIB/notation/last_item.h"
#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kTag = 0x6F744D78;

TEST(Regions, PointsMoveToTheGlobalListWhateverComesOfIt) {
  TestHost host;
  host.AddScore(5, 3);
  host.document.SetStaffList(7, {4, 2});
  struct Case {
    unsigned short list;
    short slot, new_slot;
    bool translated;
  };
  for (const Case& c :
       {Case{7, 1, 4, true}, Case{7, 2, 2, true}, Case{7, 3, 0, false}, Case{9, 1, 0, false}, Case{0, -3, -3, true}}) {
    EMUSICPOINT point{c.list, c.slot, 2, 70000};
    EXPECT_EQ(TranslateMusicPointToGlobalStaffList(point), c.translated) << c.list << "/" << c.slot;
    EXPECT_TRUE(MusicPointsEqual(point, {0, c.new_slot, 2, 70000})) << c.list << "/" << c.slot;
  }
  EREGION region{{9, 1, 1, 0}, {7, 1, 1, 0}};
  EXPECT_FALSE(TranslateRegionToGlobalStaffList(region));
  EXPECT_TRUE(MusicPointsEqual(region.end, {7, 1, 1, 0}));  // not touched
  region.start = {7, 2, 1, 0};
  EXPECT_TRUE(TranslateRegionToGlobalStaffList(region));
  EXPECT_TRUE(MusicPointsEqual(region.end, {0, 4, 1, 0}));
  for (EMUSICPOINT other : {EMUSICPOINT{1, 4, 1, 0}, {0, 5, 1, 0}, {0, 4, 2, 0}, {0, 4, 1, 1}}) {
    EXPECT_FALSE(MusicPointsEqual(region.end, other));
  }
}

// The rescaling wraps at 32 bits and truncates toward zero; done here in 64 bits and cut.
TEST(Regions, InsideOrOutsideOverTheWholeRangeOfPositions) {
  TestHost host;
  std::mt19937 random(5);
  std::map<std::string, int> durations;
  host.after = [&](sok::HostCall& call) { call.result = durations[call.arguments]; };
  constexpr int kDurations[] = {4096, 3072, 0, 1, 5, -1, 0x7FFFFFFF, -0x7FFFFFFF - 1};
  const auto any_duration = [&] { return kDurations[random() % std::size(kDurations)]; };
  int inside = 0;
  for (int round = 0; round < 20000; ++round) {
    const auto number = [&] { return static_cast<int>(random() % 6); };
    const int measure = number(), staff = number() % 3;
    const int position = round % 2 != 0 ? static_cast<int>(random()) : static_cast<int>(random() % 5000) - 100;
    EREGION region{{1, 1, static_cast<short>(number()), static_cast<int>(random() % 4000)},
                   {2, 2, static_cast<short>(number()), static_cast<int>(random() % 4000)}};
    const std::string at = " " + std::to_string(measure);
    durations = {{"0" + at, any_duration()}, {std::to_string(staff) + at, any_duration()}};

    const int first = region.start.measure, last = region.end.measure;
    bool expected = first < measure && measure < last;
    if (!expected && (measure == first || measure == last) && measure >= first && measure <= last) {
      long long place = position;
      if (staff != 0) {
        const auto length = [&](int of) {
          const int duration = durations[std::to_string(of) + at];
          return duration == 0 ? 4096LL : duration;
        };
        place = static_cast<int>(place * length(0) & 0xFFFFFFFF) / length(staff);
        place = static_cast<int>(place & 0xFFFFFFFF);
      }
      place = std::max(place, 0LL);
      expected =
          (measure != first || place >= region.start.position) && (measure != last || place <= region.end.position);
    }
    ASSERT_EQ(InRegion(measure, position, region, staff), expected) << "round " << round;
    inside += expected;
  }
  EXPECT_GT(inside, 1000);
  durations.clear();
  host.calls.clear();
  InRegion(2, 0, {{0, 1, 2, 0}, {0, 1, 2, 0}}, 3);
  EXPECT_EQ(host.calls, (std::vector<std::string>{"SX_GetMeasureDuration 0 2 -> 0", "SX_GetMeasureDuration 3 2 -> 0"}));
}

// Whatever the gaps and strides, the search ends at the highest number when there is a record to start from.
TEST(LastItem, FoundFromAnyStartWithAnyStride) {
  TestHost host;
  std::mt19937 random(6);
  for (int round = 0; round < 300; ++round) {
    host.document.records = {};
    host.calls.clear();
    std::map<int, bool> numbers;
    const int span = random() % 2 != 0 ? 60 : 0x10000;
    for (int i = 0; i < 12; ++i) {
      EDataID id{};
      id.other.cmper = static_cast<unsigned short>(random() % static_cast<unsigned int>(span));
      id.other.subIndex = static_cast<short>(random() % 2);
      if (id.other.subIndex == 0) numbers[id.other.cmper] = true;
      const char bytes[12] = {};
      host.document.records.Save(kTag, id, bytes, 12);
    }
    int highest = 0;
    host.document.records.ForEach([&](unsigned int, const EDataID& id, auto) { highest = id.other.cmper; });
    if (numbers.empty()) continue;
    const int first = std::next(numbers.begin(), static_cast<int>(random() % numbers.size()))->first;
    constexpr short kSteps[] = {1, 7, 100, 0, -1, 0x7FFF};
    const short step = kSteps[random() % std::size(kSteps)];
    char buffer[12];
    if (step == 1 && span > 60) continue;  // right, but a call for every number
    EXPECT_EQ(FindLastItem(kTag, sizeof buffer, step, buffer, first), static_cast<short>(highest))
        << first << "+" << step;
    EXPECT_LT(host.calls.size(), 2000u);
    int absent = 1;
    while (numbers.contains(absent)) ++absent;
    EXPECT_EQ(FindLastItem(kTag, sizeof buffer, step, buffer, absent), 0);
  }
}

// A load answers the record's size, which the next calls are given, but never more than the buffer holds.
TEST(LastItem, SizesFollowTheHostWithinTheBuffer) {
  TestHost host;
  constexpr int kSizes[] = {20, 6, 30};
  for (int i = 0; i < 3; ++i) {
    EDataID id{};
    id.other.cmper = static_cast<unsigned short>(i + 1);
    host.document.records.Save(kTag, id, std::vector<char>(30).data(), kSizes[i]);
  }
  char buffer[12];
  EXPECT_EQ(FindLastItem(kTag, sizeof buffer, 1, buffer, 1), 3);
  std::vector<std::string> expected;
  for (const char* call :
       {"SX_LoadEData otMx 1,0 12 -> 1", "SX_LoadEData otMx 2,0 12 -> 1", "SX_LoadEData otMx 3,0 6 -> 1",
        "SX_LoadEData otMx 4,0 12 -> 0", "SX_NextEData otMx 4,0 12 -> 0", "SX_NextEData otMx 3,0 12 -> 0"}) {
    expected.push_back(call);
  }
  EXPECT_EQ(host.calls, expected);
}

}  // namespace
