#include "host/runner/diff.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <sstream>
#include <string>

namespace {

// Applies a unified diff strictly: every line of context and every line that goes must be where the diff says.
std::string Apply(const std::string& before, const std::string& diff) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < before.size();) {
    const std::size_t end = std::min(before.find('\n', at), before.size() - 1) + 1;
    lines.push_back(before.substr(at, end - at));
    at = end;
  }
  std::istringstream in(diff);
  std::string line, after;
  std::size_t next = 0, written = 0;
  char last = ' ';
  while (std::getline(in, line)) {
    std::size_t a = 0, b = 0, a_count = 1, b_count = 1;
    if (line.starts_with("--- ") || line.starts_with("+++ ")) continue;
    if (line.starts_with("@@ ")) {
      const std::size_t plus = line.find('+');
      std::sscanf(line.c_str() + 4, "%zu,%zu", &a, &a_count);
      std::sscanf(line.c_str() + plus + 1, "%zu,%zu", &b, &b_count);
      for (const std::size_t start = a_count == 0 ? a : a - 1; next < start; ++written) after += lines.at(next++);
      EXPECT_EQ(written, b_count == 0 ? b : b - 1) << line;
    } else if (line[0] == '\\') {
      if (last != '-') after.pop_back();
    } else {
      last = line[0];
      const std::string text = line.substr(1) + "\n";
      if (last != '+') {
        EXPECT_TRUE(lines.at(next) == text || lines.at(next) + "\n" == text) << line;
        ++next;
      }
      if (last != '-') {
        after += text;
        ++written;
      }
    }
  }
  while (next < lines.size()) after += lines[next++];
  return after;
}

TEST(Diff, SaysWhatPatchUnderstands) {
  EXPECT_EQ(sok::UnifiedDiff("a\nb\n", "a\nb\n", "x", "y"), "");
  EXPECT_EQ(sok::UnifiedDiff("a\nb\nc\nd\ne\nf\n", "a\nb\nc\nd\nE\nf\n", "x", "y"),
            "--- x\n+++ y\n@@ -2,5 +2,5 @@\n b\n c\n d\n-e\n+E\n f\n");
  EXPECT_EQ(sok::UnifiedDiff("", "a", "x", "y"), "--- x\n+++ y\n@@ -0,0 +1 @@\n+a\n\\ No newline at end of file\n");
}

// Random texts of few different lines, so that equal lines stand everywhere, with and without measures to hold on to.
TEST(Diff, AppliedToTheFirstTextGivesTheSecond) {
  std::mt19937 random(20);
  const auto number = [&random](unsigned int below) { return static_cast<unsigned int>(random() % below); };
  const char* const kLines[] = {"<note>\n", "</note>\n", "<rest/>\r\n", "<measure>\n", "</measure>\n"};
  for (int round = 0; round < 500; ++round) {
    std::string before, after;
    const unsigned int kinds = 3 + number(3);
    for (unsigned int i = number(60); i > 0; --i) {
      const std::string line = kLines[number(kinds)];
      if (number(8) != 0) before += line;
      if (number(8) != 0) after += line;
    }
    if (number(4) == 0) before += "end";
    if (number(4) == 0) after += "end";
    EXPECT_EQ(Apply(before, sok::UnifiedDiff(before, after, "x", "y")), after) << "round " << round;
  }
}

}  // namespace
