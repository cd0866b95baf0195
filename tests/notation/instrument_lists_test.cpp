// Instrument lists against a model: after every operation the whole record store must be what the model says.
#include "SokExtShared/LIB/notation/instrument_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>

#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kTags[] = {0x6F744443, 0x6F746463, 0x6F74494F, 0x6F74696F};
using Link = std::array<short, 6>;

struct Model {
  std::map<std::pair<unsigned int, int>, std::vector<Link>> lists;

  bool InList(unsigned int tag, int inst, int list, bool add, bool remove) {
    if (inst < 1 || list == 0) return inst >= 1;
    auto& links = lists[{tag, list}];
    for (Link& link : links) {
      const auto at = std::find(link.begin(), link.end(), inst);
      if (at == link.end()) continue;
      if (remove) *at = 0;
      return true;
    }
    if (!add) return false;
    if (links.empty() || std::find(links.back().begin(), links.back().end(), 0) == links.back().end())
      links.push_back({});
    *std::find(links.back().begin(), links.back().end(), 0) = static_cast<short>(inst);
    return false;
  }
  int InLists(int mask, int inst, int list, bool add, bool remove) {
    int held = 0;
    for (int i = 0; i < 4; ++i) held |= (mask >> i & 1) != 0 && InList(kTags[i], inst, list, add, remove) ? 1 << i : 0;
    return held;
  }
  sok::RecordStore Store() const {
    sok::RecordStore store;
    for (const auto& [where, links] : lists) {
      EDataID id{};
      id.other.cmper = static_cast<unsigned short>(where.second);
      for (const Link& link : links) store.Save(where.first, id, &link, 12), ++id.other.subIndex;
    }
    return store;
  }
};

TEST(InstrumentLists, AnEmptyOneIsCreated) {
  TestHost host;
  EXPECT_FALSE(InstInList(0x6F744443, 3, 5, true, false));
  EXPECT_EQ(host.calls.back(), "SX_CreateEData otDC 5,-1 12 -> 1");
}

TEST(InstrumentLists, FollowAModelThroughRandomOperations) {
  TestHost host;
  host.AddScore(9, 1);  // instruments 1 to 9 have a slot
  std::mt19937 random(7);
  const auto below = [&](unsigned int limit) { return static_cast<int>(random() % limit); };
  Model model;
  for (int round = 0; round < 3000; ++round) {
    const int operation = below(12), inst = below(24) - 1, list = below(4), have = below(16), want = below(16);
    const unsigned int tag = kTags[below(4)];
    const bool add = below(2) != 0, remove = below(3) == 0;
    if (operation == 0) {
      DeleteInstFromLists(inst, list);
      model.InLists(15, inst, list, false, true);
    } else if (operation == 1) {
      MakeSureInstIsInLists(list, inst, have, want);
      model.InLists(want & ~have, inst, list, true, false);
    } else if (operation == 2) {
      ASSERT_EQ(InstInLists(inst, list, add, remove), model.InLists(add * 5 + remove * 10, inst, list, false, false));
    } else if (operation == 3) {
      bool valid = false;
      for (const Link& link : model.lists[{tag, list}]) {
        valid |= std::any_of(link.begin(), link.end(), [](short number) { return number >= 1 && number <= 9; });
      }
      ASSERT_EQ(ValidInstInList(tag, list), valid);
    } else if (operation == 4) {
      // A record in memory is the only one of a list: full, it takes no more.
      EDT_DC dc{{3, 0, static_cast<short>(below(24)), 3, static_cast<short>(below(2)), -1}};
      Model single{{{{tag, 1}, {std::to_array(dc.inst)}}}};
      const bool held = single.InList(tag, inst, 1, add, remove);
      ASSERT_EQ(InstInDC(dc, inst, add, remove), held || (add && inst > 0));
      ASSERT_EQ(std::to_array(dc.inst), (single.lists[{tag, 1}][0]));
      EDT_DC full{{1, 2, 3, 4, 5, 6}};
      ASSERT_EQ(InstInDC(full, inst, add, false), inst >= 1 && inst <= 6);
    } else {
      ASSERT_EQ(InstInList(tag, inst, list, add, remove), model.InList(tag, inst, list, add, remove));
    }
    ASSERT_TRUE(host.document.records == model.Store()) << "round " << round;
  }
  EXPECT_TRUE(InstValid(1) && InstValid(9));
  for (const int none : {10, 0, -1, 40000}) EXPECT_FALSE(InstValid(none));
  EXPECT_EQ(host.calls.back(), "SX_InstToSlot -25536 0 -> 0");  // the host is asked for every number above 0
}

}  // namespace
