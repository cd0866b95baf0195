#include "host/runner/report/diff.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "tests/runner/sokrun_process.h"
#include "tests/support/shell.h"

namespace {

// The first text as the program `patch` changes it.
std::string Patched(const Folder& folder, const std::string& before, const std::string& diff) {
  folder.Write("text", before);
  const std::string command =
      "patch --binary --fuzz=0 --quiet " + Quoted(folder / "text") + " " + Quoted(folder.Write("diff", diff));
  EXPECT_EQ(std::system(command.c_str()), 0);
  return folder.Read("text");
}

TEST(Diff, SaysWhatPatchUnderstands) {
  EXPECT_EQ(sok::UnifiedDiff("a\nb\n", "a\nb\n", "x", "y"), "");
  EXPECT_EQ(sok::UnifiedDiff("a\nb\nc\nd\ne\nf\n", "a\nb\nc\nd\nE\nf\n", "x", "y"),
            "--- x\n+++ y\n@@ -2,5 +2,5 @@\n b\n c\n d\n-e\n+E\n f\n");
  EXPECT_EQ(sok::UnifiedDiff("a\nb\nz\n", "c\nd\nz\n", "x", "y"),
            "--- x\n+++ y\n@@ -1,3 +1,3 @@\n-a\n-b\n+c\n+d\n z\n");
  EXPECT_EQ(sok::UnifiedDiff("", "a", "x", "y"), "--- x\n+++ y\n@@ -0,0 +1 @@\n+a\n\\ No newline at end of file\n");
}

// Random texts of few different lines, so that equal lines stand everywhere, with and without measures to hold on to.
TEST(Diff, AppliedToTheFirstTextGivesTheSecond) {
  const Folder folder;
  std::mt19937 random(20);
  const auto number = [&random](unsigned int below) { return static_cast<unsigned int>(random() % below); };
  const char* const kLines[] = {"<note>\n", "</note>\n", "<rest/>\r\n", "<measure>\n", "</measure>\n"};
  for (int round = 0; round < 150; ++round) {
    std::string before, after;
    const unsigned int kinds = 3 + number(3);
    for (unsigned int i = number(60); i > 0; --i) {
      const std::string line = kLines[number(kinds)];
      if (number(8) != 0) before += line;
      if (number(8) != 0) after += line;
    }
    if (number(4) == 0) before += "end";
    if (number(4) == 0) after += "end";
    const std::string diff = sok::UnifiedDiff(before, after, "x", "y");
    EXPECT_EQ(diff.empty() ? before : Patched(folder, before, diff), after) << "round " << round;
  }
}

}  // namespace
