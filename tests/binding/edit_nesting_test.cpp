// Edits: which calls reach the host, and how the counters follow.
#include "SokExtShared/SokEDK/Source/sonkelpdk/edit_nesting.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "tests/support/recording_engine.h"

namespace {

constexpr unsigned short kText[] = {'t', 0};
int value = 7;

// What a letter stands for, and its answer; 0 where there is none.
const std::map<char, std::function<int()>> kSteps = {
    {'s', [] { return SX_StartSonkelEdit("t", kInterfaceVersion); }},
    {'u', [] { return SX_StartSonkelEdit_UTF16(kText, kInterfaceVersion); }},
    {'e', [] { return SX_EndSonkelEdit(kInterfaceVersion); }},
    {'c', [] { return SX_CancelSonkelEdit(kInterfaceVersion), 0; }},
    {'a', [] { return SX_EndAllSonkelEdit(), 0; }},
    {'m', [] { return SX_StartMassEdit(&value, 3, kInterfaceVersion); }},
    {'M', [] { return SX_EndMassEdit(&value, 1, kInterfaceVersion), 0; }},
};

struct NestingCase {
  const char* steps;  // letters of kSteps
  std::vector<std::string> reached;
  int depth, mass_depth, last_result;  // of a host that answers 5 to everything
};

const NestingCase kCases[] = {
    {"e", {}, 0, 0, 1},  // an end without a start succeeds on its own
    {"c", {}, 0, 0, 0},
    {"su", {"SX_StartSonkelEdit", "SX_StartSonkelEdit_UTF16"}, 2, 0, 5},
    {"se", {"SX_StartSonkelEdit", "SX_EndSonkelEdit"}, 0, 0, 5},
    {"sc", {"SX_StartSonkelEdit", "SX_CancelSonkelEdit"}, 0, 0, 0},
    {"ssa", {"SX_StartSonkelEdit", "SX_StartSonkelEdit", "SX_EndSonkelEdit", "SX_EndSonkelEdit"}, 0, 0, 0},
    {"MMm", {"SX_EndMassEdit", "SX_EndMassEdit", "SX_StartMassEdit"}, 0, -1, 5},  // no floor
};

int TakeAll(const NestingCase& c) {
  int result = 0;  // the first case finds the depths as a process begins with them
  for (const char* step = c.steps; *step != 0; ++step) result = kSteps.at(*step)();
  EXPECT_EQ(SonkelEditDepth, c.depth) << c.steps;
  EXPECT_EQ(MassEditDepth, c.mass_depth) << c.steps;
  SonkelEditDepth = MassEditDepth = 0;
  return result;
}

TEST(EditNesting, OnlyOpenEditsAreEnded) {
  RecordingEngine engine;
  engine.Answer(5);
  for (const NestingCase& c : kCases) {
    engine.calls().clear();
    EXPECT_EQ(TakeAll(c), c.last_result) << c.steps;
    std::vector<std::string> reached;
    for (const RecordedCall& call : engine.calls()) reached.push_back(call.name);
    EXPECT_EQ(reached, c.reached) << c.steps;
  }
}

// A start counts also when the host lacks it, and the counting ends also when the host cannot end.
TEST(EditNesting, CountsWithoutTheHost) {
  for (const NestingCase& c : kCases) EXPECT_EQ(TakeAll(c), c.last_result == 5 ? 0 : c.last_result) << c.steps;
}

}  // namespace
