// Edits: which calls reach the host, and how the counters follow.
#include "SokExtShared/SokEDK/Source/sonkelpdk/edit_nesting.h"

#include <gtest/gtest.h>

#include "tests/support/recording_engine.h"

namespace {

enum class Step { kStart, kStart16, kEnd, kCancel, kEndAll, kStartMass, kEndMass };

struct NestingCase {
  const char* name;
  std::vector<Step> steps;
  std::vector<std::string> reached;
  int depth;
  int mass_depth;
  int last_result;
};

const NestingCase kCases[] = {
    {"an end without a start succeeds on its own", {Step::kEnd}, {}, 0, 0, 1},
    {"a cancel without a start does nothing", {Step::kCancel}, {}, 0, 0, 0},
    {"both starts count", {Step::kStart, Step::kStart16}, {"SX_StartSonkelEdit", "SX_StartSonkelEdit_UTF16"}, 2, 0, 5},
    {"an end after a start", {Step::kStart, Step::kEnd}, {"SX_StartSonkelEdit", "SX_EndSonkelEdit"}, 0, 0, 5},
    {"a cancel after a start", {Step::kStart, Step::kCancel}, {"SX_StartSonkelEdit", "SX_CancelSonkelEdit"}, 0, 0, 0},
    {"end all ends each",
     {Step::kStart, Step::kStart, Step::kEndAll},
     {"SX_StartSonkelEdit", "SX_StartSonkelEdit", "SX_EndSonkelEdit", "SX_EndSonkelEdit"},
     0, 0, 0},
    {"mass edits have no floor", {Step::kEndMass, Step::kEndMass, Step::kStartMass},
     {"SX_EndMassEdit", "SX_EndMassEdit", "SX_StartMassEdit"}, 0, -1, 5},
};

int Take(Step step) {
  const unsigned short text[] = {'t', 0};
  int value = 7;
  switch (step) {
    case Step::kStart: return SX_StartSonkelEdit("t", kInterfaceVersion);
    case Step::kStart16: return SX_StartSonkelEdit_UTF16(text, kInterfaceVersion);
    case Step::kEnd: return SX_EndSonkelEdit(kInterfaceVersion);
    case Step::kCancel: SX_CancelSonkelEdit(kInterfaceVersion); return 0;
    case Step::kEndAll: SX_EndAllSonkelEdit(); return 0;
    case Step::kStartMass: return SX_StartMassEdit(&value, 3, kInterfaceVersion);
    case Step::kEndMass: SX_EndMassEdit(&value, 1, kInterfaceVersion); return 0;
  }
  return 0;
}

int TakeAll(const NestingCase& c) {
  SonkelEditDepth = MassEditDepth = 0;
  int result = 0;
  for (const Step step : c.steps) result = Take(step);
  EXPECT_EQ(SonkelEditDepth, c.depth);
  EXPECT_EQ(MassEditDepth, c.mass_depth);
  return result;
}

TEST(EditNesting, OnlyOpenEditsAreEnded) {
  RecordingEngine engine;
  engine.Answer(5);
  for (const NestingCase& c : kCases) {
    SCOPED_TRACE(c.name);
    engine.calls().clear();
    EXPECT_EQ(TakeAll(c), c.last_result);
    std::vector<std::string> reached;
    for (const RecordedCall& call : engine.calls()) reached.push_back(call.name);
    EXPECT_EQ(reached, c.reached);
  }
}

// A start counts also when the host lacks it, and the counting ends also when the host cannot end.
TEST(EditNesting, CountsWithoutTheHost) {
  for (const NestingCase& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(TakeAll(c), c.last_result == 5 ? 0 : c.last_result);
  }
}

}  // namespace
