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
using Model = std::map<std::pair<unsigned int, int>, std::vector<Link>>;

sok::RecordStore StoreOf(const Model& model) {
  sok::RecordStore store;
  for (const auto& [where, links] : model) {
    for (size_t i = 0; i < links.size(); ++i) {
      EDataID id{};
      id.other.cmper = static_cast<unsigned short>(where.second);
      id.other.subIndex = static_cast<short>(i);
      store.Save(where.first, id, links[i].data(), 12);
    }
  }
  return store;
}

bool ModelInList(Model& model, unsigned int tag, int inst, int list, bool add, bool remove) {
  if (inst < 1) return false;
  if (list == 0) return true;
  auto& links = model[{tag, list}];
  for (Link& link : links) {
    if (const auto at = std::find(link.begin(), link.end(), inst); at != link.end()) {
      if (remove) *at = 0;
      return true;
    }
  }
  if (!add) return false;
  if (!links.empty()) {
    if (const auto free = std::find(links.back().begin(), links.back().end(), 0); free != links.back().end()) {
      *free = static_cast<short>(inst);
      return false;
    }
  }
  links.push_back({static_cast<short>(inst)});
  return false;
}

TEST(InstrumentLists, FollowAModelThroughRandomOperations) {
  TestHost host;
  host.AddScore(9, 1);  // instruments 1 to 9 have a slot
  std::mt19937 random(7);
  const auto below = [&](unsigned int limit) { return static_cast<int>(random() % limit); };
  const auto has_slot = [](short inst) { return inst >= 1 && inst <= 9; };
  Model model;
  for (int round = 0; round < 6000; ++round) {
    const int inst = below(24) - 1, list = below(4);
    const unsigned int tag = kTags[below(4)];
    const bool add = below(2) != 0, remove = below(3) == 0;
    const auto all = [&](int mask, bool adds, bool removes) {
      int held = 0;
      for (int i = 0; i < 4; ++i) {
        if ((mask >> i & 1) != 0 && ModelInList(model, kTags[i], inst, list, adds, removes)) held |= 1 << i;
      }
      return held;
    };
    switch (below(12)) {
      case 0:
        DeleteInstFromLists(inst, list);
        all(15, false, true);
        break;
      case 1: {
        const int have = below(16), want = below(16);
        MakeSureInstIsInLists(list, inst, have, want);
        all(want & ~have, true, false);
        break;
      }
      case 2:
        ASSERT_EQ(InstInLists(inst, list, add, remove),
                  all((add ? 5 : 0) + (remove ? 10 : 0), false, false) * (inst != 0));
        break;
      case 3: {
        bool valid = false;
        for (const Link& link : model[{tag, list}]) valid |= std::any_of(link.begin(), link.end(), has_slot);
        ASSERT_EQ(ValidInstInList(tag, list), valid && list != 0);
        break;
      }
      default:
        ASSERT_EQ(InstInList(tag, inst, list, add, remove), ModelInList(model, tag, inst, list, add, remove));
    }
    ASSERT_TRUE(host.document.records == StoreOf(model)) << "round " << round;
  }
  EXPECT_TRUE(InstValid(9));
  for (const int none : {10, 0, -1}) EXPECT_FALSE(InstValid(none));
}

// Lists that need not be read are not; the two upper ones are asked before the lower ones.
TEST(InstrumentLists, AskTheHostForNoMoreThanNeeded) {
  TestHost host;
  EXPECT_EQ(InstInLists(3, 1, false, false), 0);
  EXPECT_TRUE(InstInList(kTags[0], 3, 0, true, true));
  EXPECT_FALSE(ValidInstInList(kTags[0], 0));
  EXPECT_TRUE(host.calls.empty());
  InstInLists(3, 1, true, true);
  std::vector<std::string> loads;
  for (const char* tag : {"otDC", "otIO", "otdc", "otio"})
    loads.push_back(std::string("SX_LoadEData ") + tag + " 1,0 12 -> 0");
  EXPECT_EQ(host.CallsWith("SX_LoadEData"), loads);
}

TEST(InstrumentLists, OneRecordInMemory) {
  TestHost host;
  host.AddScore(2, 1);
  struct Case {
    EDT_DC dc;
    int inst;
    bool add, remove, result;
    Link after;
  };
  for (const Case& c : {Case{{{7, 3, 3, 0, 0, 0}}, 3, true, true, true, {7, 0, 3, 0, 0, 0}},
                        Case{{{7, 0, 3, 0, 0, 0}}, 4, true, false, true, {7, 4, 3, 0, 0, 0}},
                        Case{{{7, 0, 3, 0, 0, 0}}, 4, false, true, false, {7, 0, 3, 0, 0, 0}},
                        Case{{{1, 2, 3, 4, 5, 6}}, 7, true, false, false, {1, 2, 3, 4, 5, 6}},
                        Case{{{-1, 0, 3, 0, 0, 0}}, -1, true, true, false, {-1, 0, 3, 0, 0, 0}}}) {
    EDT_DC dc = c.dc;
    EXPECT_EQ(InstInDC(dc, c.inst, c.add, c.remove), c.result);
    EXPECT_EQ(std::to_array(dc.inst), c.after);
  }
  EDT_DC dc{{0, -2, 30, 2, 1, 0}};
  host.calls.clear();
  EXPECT_TRUE(ValidInstInDC(dc));
  EXPECT_EQ(host.calls, (std::vector<std::string>{"SX_InstToSlot 30 0 -> 0", "SX_InstToSlot 2 0 -> 2"}));
}

}  // namespace
