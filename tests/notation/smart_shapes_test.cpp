// Smart shapes: the word orders, and the records against a model that keeps shapes, marks and centre shapes as lists.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <set>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/smartshapes/smart_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_form.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kShape = 0x4F085378, kCenter = 0x44034378, kMeasureMark = 0x6F744D78, kEntryMark = 0x65644578;
constexpr unsigned int kOldest = 0, kNewOrder = 0x0B000000;
constexpr int kStaves = 6, kMeasures = 40;

struct Model {
  std::map<int, EDTSmartShape> shapes;
  std::map<int, std::vector<std::pair<int, int>>> measure_marks;  // shape, centre shape
  std::map<int, std::vector<int>> entry_marks;
  std::set<std::pair<int, int>> centers;

  void Mark(int number, const EDTSmartShape& shape) {
    for (int m = shape.startMeasure; m <= shape.endMeasure; ++m) {
      int center = 0;
      if (m != shape.startMeasure && m != shape.endMeasure) {
        const auto after = centers.lower_bound({number + 1, 0});
        center = after != centers.begin() && std::prev(after)->first == number ? std::prev(after)->second + 1 : 1;
        centers.insert({number, center});
      }
      measure_marks[m].push_back({number, center});
    }
    if ((shape.flags & kSmartShapeOnEntries) == 0) return;
    for (const int entry : {shape.startEntry, shape.endEntry}) entry_marks[entry].push_back(number);
  }
  int Create(const EDTSmartShape& shape) {
    const int number = shapes.empty() ? 1 : shapes.rbegin()->first + 1;
    Mark(number, shapes[number] = shape);
    return number;
  }
  void Erase(int number) {
    shapes.erase(number);
    for (auto& [measure, marks] : measure_marks) std::erase_if(marks, [&](auto& mark) { return mark.first == number; });
    for (auto& [entry, numbers] : entry_marks) std::erase(numbers, number);
    std::erase_if(centers, [&](auto& center) { return center.first == number; });
  }
  // Slots and instruments are the same here, counted in the global list.
  void Copy(const EREGION& from, const EREGION& to) {
    const int span = std::min(from.end.measure - from.start.measure, to.end.measure - to.start.measure);
    std::vector<int> originals;  // as they are met; none of the copies
    for (int m = from.start.measure; m <= from.start.measure + span; ++m) {
      for (const auto& mark : measure_marks[m]) {
        if (std::find(originals.begin(), originals.end(), mark.first) == originals.end())
          originals.push_back(mark.first);
      }
    }
    for (const int number : originals) {
      EDTSmartShape copy = shapes[number];
      const int slot = copy.startStaff, new_slot = slot - from.start.slot + to.start.slot;
      if ((copy.flags & kSmartShapeOnEntries) != 0 || slot < from.start.slot || slot > from.end.slot) continue;
      if (new_slot > to.end.slot || new_slot > kStaves) continue;
      copy.startMeasure = static_cast<short>(copy.startMeasure + to.start.measure - from.start.measure);
      copy.endMeasure = static_cast<short>(copy.endMeasure + to.start.measure - from.start.measure);
      copy.startStaff = copy.endStaff = static_cast<unsigned short>(new_slot);
      Create(copy);
    }
  }
  sok::RecordStore Store(bool old_order) const {
    sok::RecordStore store;
    for (const auto& [number, shape] : shapes) {
      unsigned short words[46];
      std::memcpy(words, &shape, sizeof words);
      for (const std::size_t at : {1u, 5u, 20u}) {
        if (old_order) std::swap(words[at], words[at + 1]);
      }
      store.Save(kShape, {.other = {static_cast<unsigned short>(number), 0}}, words, sizeof words);
    }
    for (const auto& [measure, marks] : measure_marks) {
      EDataID id{.other = {static_cast<unsigned short>(measure), 0}};
      for (const auto& [number, center] : marks) {
        const unsigned short mark[6] = {static_cast<unsigned short>(number), static_cast<unsigned short>(center)};
        store.Save(kMeasureMark, id, mark, sizeof mark), ++id.other.subIndex;
      }
    }
    for (const auto& [entry, numbers] : entry_marks) {
      EDataID id{.entryDetail = {entry, 0}};
      for (const int number : numbers) {
        const unsigned short mark[5] = {static_cast<unsigned short>(number)};
        store.Save(kEntryMark, id, mark, sizeof mark), ++id.entryDetail.subIndex;
      }
    }
    for (const auto& [number, center] : centers) {
      store.Save(kCenter, record_calls::DetailKey(number, center, 0), std::string(22, '\0').data(), 22);
    }
    return store;
  }
};

EDTSmartShape Shape(int staff, int first, int last, int start_entry = 0, int end_entry = 0) {
  EDTSmartShape shape{};
  shape.flags = 0x1234 | (start_entry != 0 ? kSmartShapeOnEntries : 0);
  shape.startStaff = shape.endStaff = static_cast<unsigned short>(staff);
  shape.startMeasure = static_cast<short>(first);
  shape.endMeasure = static_cast<short>(last);
  shape.startEntry = start_entry;
  shape.endEntry = end_entry;
  return shape;
}

EREGION Region(int first_slot, int last_slot, int first, int last) {
  return {{0, static_cast<short>(first_slot), static_cast<short>(first), 0},
          {0, static_cast<short>(last_slot), static_cast<short>(last), 0}};
}

class SmartShapeModel : public testing::TestWithParam<unsigned int> {};

TEST_P(SmartShapeModel, HoldsThroughRandomOperations) {
  SokVersion = GetParam();
  TestHost host;
  host.AddScore(kStaves, kMeasures);
  std::mt19937 random(9);
  const auto from = [&](int first, int count) {
    return first + static_cast<int>(random() % static_cast<unsigned>(count));
  };
  Model model;
  for (int round = 0; round < 400; ++round) {
    const int operation = from(0, 10), slot = from(1, kStaves), first = from(20, 8);
    unsigned short number = 0;
    EDTSmartShape shape = Shape(slot, first, first + from(-1, 6), from(0, 3) * 0x10001, from(1, 3) * 0x10001);
    const EREGION source = Region(slot, slot + from(0, 3), first, first + from(-1, 5));
    const EREGION target = Region(from(1, kStaves), kStaves + from(-1, 3), from(20, 8), kMeasures);
    if ((operation < 4 && model.shapes.size() < 40) || model.shapes.empty()) {
      ASSERT_TRUE(shape.FullCreate(number));
      ASSERT_EQ(number, model.Create(shape));
    } else if (operation < 6 && model.shapes.size() < 60) {
      EDTSmartShape::CopyMeasureShapes(source, round % 3 != 0 ? target : source, 1, 2);
      model.Copy(source, round % 3 != 0 ? target : source);
    } else {
      number = static_cast<unsigned short>(
          std::next(model.shapes.begin(), from(0, static_cast<int>(model.shapes.size())))->first);
      ASSERT_TRUE(shape.Load(number));
      if (operation == 6) {
        ASSERT_TRUE(shape.FullSave(number));  // a second set of marks
        model.Mark(number, model.shapes[number]);
      } else {
        ASSERT_TRUE(shape.FullErase(number));
        model.Erase(number);
      }
    }
    ASSERT_TRUE(host.document.records == model.Store(GetParam() == kOldest)) << "round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(WordOrders, SmartShapeModel, testing::Values(kOldest, kNewOrder),
                         [](const auto& tested) { return tested.param == kOldest ? "Host" : "PlugIn"; });

TEST(SmartShape, WordOrderByHostVersion) {
  struct Case {
    unsigned int version, entry, swapped;
  };
  for (const Case& c : {Case{0, 5, 0x00050000},
                        {0x0A000000, 0x00012345, 0x23450001},
                        {0x0AFFFFFF, 0xFFFFFFFF, 0xFFFF0000},
                        {0, 0xFFFEFFFF, 0xFFFEFFFF},
                        {0, 0x80010000, 0xFFFF8001},
                        {kNewOrder, 5, 5},
                        {0xF0000000, 5, 5}}) {
    SokVersion = c.version;
    EDTSmartShape shape = Shape(1, 1, 1, static_cast<int>(c.entry), static_cast<int>(c.entry));
    shape.SwapWords();
    EXPECT_EQ(static_cast<unsigned int>(shape.startEntry), c.swapped);
    EXPECT_EQ(static_cast<unsigned int>(shape.endEntry), c.swapped);
    EXPECT_EQ(shape.flags + 0, c.version < kNewOrder ? 0x12344000u : 0x40001234u);
  }
}

// After a failed call too a shape is in the plug-in's order, except that a failed load converts what it found.
TEST(SmartShape, FailedCallsKeepTheWordOrderAndLeaveNumbersAsTheHostDid) {
  TestHost host;
  host.refuse = [](const sok::HostCall&) { return true; };
  EDTSmartShape shape = Shape(1, 3, 3, 5);
  unsigned short number = 7;
  EXPECT_FALSE(shape.SaveShapeOnly(number) || shape.CreateShapeOnly(number));
  EXPECT_EQ(number, 0xFFFF);
  EXPECT_EQ(shape.startEntry + 0, 5);
  EXPECT_FALSE(shape.Load(7));
  EXPECT_EQ(shape.startEntry + 0, 0x00050000);
}

// The number may be the object's own field: the host is given 0xFFFF there, not what stood in it.
TEST(SmartShape, AFieldOfTheShapeTakesItsNumber) {
  SokVersion = kNewOrder;
  TestHost host;
  EDTSmartShape shape = Shape(1, 3, 3), stored{};
  shape.CreateShapeOnly(shape.endStaff);
  EXPECT_EQ(shape.endStaff, 1);
  EXPECT_TRUE(stored.Load(1) && stored.endStaff == 0xFFFF);
}

// A host that deletes nothing: every mark is tried once, in order, each centre shape before its mark. The last measures
// there can be: the loops over them end.
TEST(SmartShape, RefusedDeletesAreTriedOnce) {
  SokVersion = kNewOrder;
  TestHost host;
  EDTSmartShape shape = Shape(1, 0x7FFD, 0x7FFF, 11, 11);
  unsigned short number = 0;
  shape.FullCreate(number);
  EDTSmartShape::CopyMeasureShapes(Region(1, 9, 0x7FFE, 0x7FFF), Region(1, 9, 0x7FFE, 0x7FFF), 0, 0);
  host.refuse = [](const sok::HostCall& call) { return call.name == std::string_view("SX_DeleteEData"); };
  EXPECT_FALSE(shape.FullErase(number));
  std::vector<std::string> expected;
  for (const char* key : {"O\\x08Sx 1,0", "otMx 32765,0", "D\\x03Cx 1,1,0", "otMx 32766,0", "otMx 32767,0", "edEx 11,0",
                          "edEx 11,1", "edEx 11,0", "edEx 11,1"}) {
    expected.push_back(std::string("SX_DeleteEData ") + key + " -> 0");
  }
  EXPECT_EQ(host.CallsWith("SX_DeleteEData"), expected);
}

// What no shape operation uses: marks alone, the older form.
TEST(SmartShapeMarks, EraseAndOlderForm) {
  TestHost host;
  EDTSmartShapeMeasMark mark{3, 8, {}};
  short place = -1;
  unsigned short number = 0;
  EXPECT_TRUE(mark.Create(2, place) && place == 0);
  EXPECT_TRUE(EDTSmartShapeMeasMark::FindAndEraseMarkOnly(2, 3) && host.CallsWith("Cx").empty());
  EXPECT_TRUE(host.document.records == sok::RecordStore());
  TurnOnEDTSmartShapeCompatibilityForSonkel2000_2003();
  EDTSmartShape shape = Shape(1, 1, 1);
  EXPECT_TRUE(shape.CreateShapeOnly(number) && EDTSmartShape::EraseShapeOnly(number));
  EXPECT_EQ(host.CallsWith("Sx"),
            (std::vector<std::string>{"SX_CreateEData O\\x07Sx 65535,0 84 -> 1", "SX_DeleteEData O\\x07Sx 1,0 -> 1"}));
}

}  // namespace
