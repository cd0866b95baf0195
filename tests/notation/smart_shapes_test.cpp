// Smart shapes: the word orders, and the records against a model that keeps shapes, marks and centre shapes as lists.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <random>
#include <set>

#include "SokExtShared/LIB/records/typed_records.h"
#include "SokExtShared/LIB/smartshapes/center_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_form.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "tests/support/test_host.h"

namespace {

constexpr unsigned int kShape = 0x4F085378, kCenter = 0x44034378, kMeasureMark = 0x6F744D78, kEntryMark = 0x65644578;
constexpr unsigned int kOldest = 0, kNewOrder = 0x0B000000;
constexpr short kStaves = 6, kMeasures = 40;

EDataID Other(int number, int subIndex = 0) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(number);
  id.other.subIndex = static_cast<short>(subIndex);
  return id;
}

// The words of a shape on entries as the host of an older version holds them.
std::vector<unsigned short> HostWords(const EDTSmartShape& shape, bool old_order) {
  std::vector<unsigned short> words(46);
  std::memcpy(words.data(), &shape, 92);
  if (old_order) {
    for (const size_t at : {1u, 5u, 20u}) std::swap(words[at], words[at + 1]);
  }
  return words;
}

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
    entry_marks[shape.startEntry + 0].push_back(number);
    entry_marks[shape.endEntry + 0].push_back(number);
  }
  int Create(const EDTSmartShape& shape) {
    const int number = shapes.empty() ? 1 : shapes.rbegin()->first + 1;
    shapes[number] = shape;
    Mark(number, shape);
    return number;
  }
  void Erase(int number) {
    const EDTSmartShape shape = shapes[number];
    shapes.erase(number);
    for (int m = shape.startMeasure; m <= shape.endMeasure; ++m) {
      std::erase_if(measure_marks[m], [&](const auto& mark) {
        if (mark.first == number) centers.erase(mark);
        return mark.first == number;
      });
    }
    if ((shape.flags & kSmartShapeOnEntries) == 0) return;
    std::erase(entry_marks[shape.startEntry + 0], number);
    std::erase(entry_marks[shape.endEntry + 0], number);
  }
  // Slots and instruments are the same here, counted in the global list.
  void Copy(const EREGION& from, const EREGION& to) {
    const int span = std::min(from.end.measure - from.start.measure, to.end.measure - to.start.measure);
    std::vector<int> originals;  // as they are met; none of the copies
    for (int m = from.start.measure; m <= from.start.measure + span; ++m) {
      for (const auto& [number, center] : measure_marks[m]) {
        if (std::find(originals.begin(), originals.end(), number) == originals.end()) originals.push_back(number);
      }
    }
    for (const int number : originals) {
      EDTSmartShape copy = shapes[number];
      const int slot = copy.startStaff, new_slot = slot - from.start.slot + to.start.slot;
      if ((copy.flags & kSmartShapeOnEntries) != 0 || slot < from.start.slot || slot > from.end.slot) continue;
      if (new_slot > to.end.slot || new_slot < 1 || new_slot > kStaves) continue;
      const int offset = to.start.measure - from.start.measure;
      copy.startMeasure = static_cast<short>(copy.startMeasure + offset);
      copy.endMeasure = static_cast<short>(copy.endMeasure + offset);
      copy.startStaff = copy.endStaff = static_cast<unsigned short>(new_slot);
      Create(copy);
    }
  }
  sok::RecordStore Store(bool old_order) const {
    sok::RecordStore store;
    for (const auto& [number, shape] : shapes) {
      store.Save(kShape, Other(number), HostWords(shape, old_order).data(), 92);
    }
    for (const auto& [measure, marks] : measure_marks) {
      for (size_t i = 0; i < marks.size(); ++i) {
        const EDTSmartShapeMeasMark mark{
            static_cast<unsigned short>(marks[i].first), static_cast<unsigned short>(marks[i].second), {}};
        store.Save(kMeasureMark, Other(measure, static_cast<int>(i)), &mark, 12);
      }
    }
    for (const auto& [entry, numbers] : entry_marks) {
      for (size_t i = 0; i < numbers.size(); ++i) {
        EDataID id{};
        id.entryDetail.entryNum = entry;
        id.entryDetail.subIndex = static_cast<short>(i);
        const EDTSmartShapeEntMark mark{static_cast<unsigned short>(numbers[i]), {}};
        store.Save(kEntryMark, id, &mark, 10);
      }
    }
    for (const auto& [number, center] : centers) {
      EDataID id = Other(number);
      id.detail.secondCmper = static_cast<unsigned short>(center);
      const EDTCenterShape record{};
      store.Save(kCenter, id, &record, 22);
    }
    return store;
  }
};

EDTSmartShape Shape(int staff, int first, int last, bool on_entries = false) {
  EDTSmartShape shape{};
  shape.flags = on_entries ? kSmartShapeOnEntries | 0x1234 : 0x4321;
  shape.startStaff = shape.endStaff = static_cast<unsigned short>(staff);
  shape.startMeasure = static_cast<short>(first);
  shape.endMeasure = static_cast<short>(last);
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
  for (int round = 0; round < 500; ++round) {
    const int operation = from(0, 10);
    const int first = from(1, kMeasures);
    if (operation < 5 || model.shapes.empty()) {
      EDTSmartShape shape = Shape(from(1, kStaves), first, first + from(-1, 6), random() % 2 != 0);
      shape.startEntry = from(1, 4) * 0x10001;
      shape.endEntry = from(1, 4) * 0x10001;
      unsigned short number = 0;
      ASSERT_TRUE(shape.FullCreate(number));
      ASSERT_EQ(number, model.Create(shape));
    } else if (operation < 8) {
      const auto number = static_cast<unsigned short>(
          std::next(model.shapes.begin(), from(0, static_cast<int>(model.shapes.size())))->first);
      EDTSmartShape shape{};
      ASSERT_TRUE(shape.Load(number));
      if (operation == 5 && model.shapes.size() < 20) {
        ASSERT_TRUE(shape.FullSave(number));  // a second set of marks
        model.Mark(number, model.shapes[number]);
      } else {
        ASSERT_TRUE(shape.FullErase(number));
        model.Erase(number);
      }
    } else {
      const auto region = [&] {
        const int slot = from(1, kStaves), measure = from(1, kMeasures);
        return Region(slot, slot + from(0, 3), measure, measure + from(-1, 5));
      };
      const EREGION source = region(), target = round % 3 != 0 ? region() : source;
      EDTSmartShape::CopyMeasureShapes(source, target, 1, 2);
      model.Copy(source, target);
      while (model.shapes.size() > 60) {
        const auto number = static_cast<unsigned short>(model.shapes.begin()->first);
        ASSERT_TRUE(model.shapes.begin()->second.FullErase(number));
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
    unsigned int version;
    int entry, swapped;
  };
  for (const Case& c :
       {Case{0, 5, 0x00050000}, Case{0x0A000000, 0x00012345, 0x23450001},
        Case{0x0AFFFFFF, -1, static_cast<int>(0xFFFF0000)}, Case{0, -65537, static_cast<int>(0xFFFEFFFF)},
        Case{0, static_cast<int>(0x80010000), static_cast<int>(0xFFFF8001)}, Case{kNewOrder, 5, 5},
        Case{0xF0000000, -1, -1}}) {
    SokVersion = c.version;
    EDTSmartShape shape{};
    shape.startEntry = shape.endEntry = c.entry;
    shape.flags = 0x40001234;
    shape.SwapWords();
    EXPECT_EQ(shape.startEntry + 0, c.swapped) << c.entry;
    EXPECT_EQ(shape.endEntry + 0, c.swapped) << c.entry;
    EXPECT_EQ(shape.flags + 0, c.version < kNewOrder ? 0x12344000u : 0x40001234u);
  }
}

// After a failed call too a shape is in the plug-in's order, except that a failed load converts what it found.
TEST(SmartShape, FailedCallsKeepTheWordOrderAndLeaveNumbersAsTheHostDid) {
  TestHost host;
  host.refuse = [](const sok::HostCall&) { return true; };
  EDTSmartShape shape = Shape(1, 3, 3);
  shape.startEntry = 5;
  unsigned short number = 7;
  EXPECT_FALSE(shape.SaveShapeOnly(number));
  EXPECT_FALSE(shape.CreateShapeOnly(number));
  EXPECT_EQ(number, 0xFFFF);
  EXPECT_EQ(shape.startEntry + 0, 5);
  EXPECT_FALSE(shape.Load(7));
  EXPECT_EQ(shape.startEntry + 0, 0x00050000);
  number = 9;
  EXPECT_FALSE(shape.Next(number));
  EXPECT_EQ(number, 9);
  EXPECT_EQ(shape.startEntry + 0, 5);
}

// A host that deletes nothing: every mark is tried once, in order, each centre shape before its mark.
TEST(SmartShape, RefusedDeletesAreTriedOnce) {
  SokVersion = kNewOrder;
  TestHost host;
  EDTSmartShape shape = Shape(1, 3, 5, true);
  shape.startEntry = shape.endEntry = 11;
  unsigned short number = 0;
  shape.FullCreate(number);
  host.refuse = [](const sok::HostCall& call) { return call.name == std::string_view("SX_DeleteEData"); };
  host.calls.clear();
  EXPECT_FALSE(shape.FullErase(number));
  std::vector<std::string> expected;
  for (const char* key : {"O\\x08Sx 1,0", "otMx 3,0", "D\\x03Cx 1,1,0", "otMx 4,0", "otMx 5,0", "edEx 11,0",
                          "edEx 11,1", "edEx 11,0", "edEx 11,1"}) {
    expected.push_back(std::string("SX_DeleteEData ") + key + " -> 0");
  }
  EXPECT_EQ(host.CallsWith("SX_DeleteEData"), expected);
}

TEST(SmartShape, LoopsEndAtTheLastMeasure) {
  SokVersion = kNewOrder;
  TestHost host;
  unsigned short number = 0;
  EDTSmartShape shape = Shape(1, 0x7FFE, 0x7FFF);
  EXPECT_TRUE(shape.FullCreate(number));
  EDTSmartShape::CopyMeasureShapes(Region(1, 9, 0x7FFE, 0x7FFF), Region(1, 9, 0x7FFE, 0x7FFF), 0, 0);
  EXPECT_TRUE(shape.FullErase(number));
  EXPECT_TRUE(host.document.records == sok::RecordStore());
}

// What no shape operation uses: loads, saves and steps of the marks, marks alone, the older form.
TEST(SmartShapeMarks, LoadSaveStepAndErase) {
  TestHost host;
  EDTSmartShapeMeasMark mark{3, 0, {}};
  short subIndex = -1;
  for (const unsigned short measure : std::initializer_list<unsigned short>{1, 1, 2}) {
    subIndex = -1;
    EXPECT_TRUE(mark.Create(measure, subIndex));
  }
  EXPECT_EQ(subIndex, 0);
  mark.centerShape = 8;
  EXPECT_TRUE(mark.Save(2, 0));
  mark = {};
  EXPECT_TRUE(mark.Next(1, subIndex));
  EXPECT_EQ(subIndex, 1);
  EXPECT_TRUE(mark.Next(1, subIndex));  // measure 2's; its key shows in `subIndex` alone
  EXPECT_EQ(subIndex, 0);
  EXPECT_EQ(mark.centerShape, 8);
  host.calls.clear();
  EXPECT_TRUE(EDTSmartShapeMeasMark::FindAndEraseMarkOnly(2, 3));
  EXPECT_TRUE(EDTSmartShapeMeasMark::FindAndEraseMarkOnly(1, 3));
  EXPECT_TRUE(host.CallsWith("Cx").empty());

  EDTSmartShapeEntMark on_entry{3, {}};
  for (const int entry : {70000, -1}) {
    subIndex = -1;
    EXPECT_TRUE(on_entry.Create(entry, subIndex));
  }
  int entry = -1;
  EXPECT_TRUE(on_entry.Next(entry, subIndex));
  EXPECT_EQ(entry, 70000);
  EXPECT_TRUE(EDTSmartShapeEntMark::Erase(70000, 0) && EDTSmartShapeEntMark::FindAndErase(-1, 3));

  EDTCenterShape center{};
  unsigned short number = 0xFFFF;
  EXPECT_TRUE(center.CreateShapeOnly(3, number));
  center.host[21] = 5;
  EXPECT_TRUE(center.Save(3, number));
  center = {};
  EXPECT_TRUE(center.Load(3, number));
  EXPECT_EQ(center.host[21], 5);
  EXPECT_TRUE(EDTCenterShape::EraseShapeOnly(3, number));
  EXPECT_TRUE(host.document.records == sok::RecordStore());

  TurnOnEDTSmartShapeCompatibilityForSonkel2000_2003();
  host.calls.clear();
  EDTSmartShape shape = Shape(1, 1, 1);
  EXPECT_TRUE(shape.CreateShapeOnly(number));
  EXPECT_TRUE(shape.Load(number));
  EXPECT_TRUE(EDTSmartShape::EraseShapeOnly(number));
  EXPECT_EQ(host.calls,
            (std::vector<std::string>{"SX_CreateEData O\\x07Sx 65535,0 84 -> 1", "SX_LoadEData O\\x07Sx 1,0 84 -> 1",
                                      "SX_DeleteEData O\\x07Sx 1,0 -> 1"}));
}

}  // namespace
