#include "host/runner/report/diff.h"

#include <algorithm>
#include <dtl/dtl.hpp>
#include <functional>
#include <span>
#include <vector>

namespace sok {
namespace {

using Lines = std::vector<std::string_view>;
using Stretch = std::span<const std::string_view>;

constexpr std::size_t kContext = 3;

// Lines with their ends.
Lines SplitLines(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

// A line that stays is in both texts, one that goes only in `before`, one that comes only in `after`.
struct Step {
  bool before = false;
  bool after = false;

  bool Stays() const { return before && after; }
  char Mark() const { return Stays() ? ' ' : before ? '-' : '+'; }
};
using Script = std::vector<Step>;

// The shortest edit script of a stretch. What both begin with and end with is left out of the comparison.
void AppendScript(Stretch a, Stretch b, Script& script) {
  const auto keep = [&script](std::size_t count) { script.insert(script.end(), count, Step{true, true}); };
  const auto head = static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
  keep(head);
  a = a.subspan(head);
  b = b.subspan(head);
  const auto ends = std::mismatch(a.rbegin(), a.rend(), b.rbegin(), b.rend());
  const auto tail = static_cast<std::size_t>(ends.first - a.rbegin());
  a = a.first(a.size() - tail);
  b = b.first(b.size() - tail);
  dtl::Diff<std::string_view, Lines> difference(Lines(a.begin(), a.end()), Lines(b.begin(), b.end()));
  difference.compose();
  for (const auto& [line, edit] : difference.getSes().getSequence()) {
    script.push_back({edit.type != dtl::SES_ADD, edit.type != dtl::SES_DELETE});
  }
  keep(tail);
}

// Where stretches begin that belong together in both texts: the start, and every line with a measure.
std::vector<std::size_t> Anchors(const Lines& lines) {
  std::vector<std::size_t> anchors = {0};
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i].find("<measure") != std::string_view::npos) anchors.push_back(i);
  }
  anchors.push_back(lines.size());
  return anchors;
}

// Of a change, what goes stands before what comes.
void SortChanges(Script& script) {
  for (auto at = script.begin(); at != script.end();) {
    at = std::find_if_not(at, script.end(), std::mem_fn(&Step::Stays));
    const auto end = std::find_if(at, script.end(), std::mem_fn(&Step::Stays));
    std::partition(at, end, std::mem_fn(&Step::before));
    at = end;
  }
}

Script MakeScript(const Lines& a, const Lines& b) {
  Script script;
  const std::vector<std::size_t> in_a = Anchors(a), in_b = Anchors(b);
  if (in_a.size() != in_b.size()) {
    AppendScript(a, b, script);
    return script;
  }
  for (std::size_t i = 0; i + 1 < in_a.size(); ++i) {
    AppendScript(Stretch(a).subspan(in_a[i], in_a[i + 1] - in_a[i]), Stretch(b).subspan(in_b[i], in_b[i + 1] - in_b[i]),
                 script);
  }
  return script;
}

// The steps of each hunk, from the first to behind the last: changes with the lines around them.
struct Hunk {
  std::size_t begin = 0;
  std::size_t end = 0;
};

std::vector<Hunk> HunksOf(const Script& script) {
  std::vector<Hunk> hunks;
  for (std::size_t i = 0; i < script.size(); ++i) {
    if (script[i].Stays()) continue;
    const std::size_t begin = i - std::min(i, kContext), end = std::min(i + kContext + 1, script.size());
    if (hunks.empty() || begin > hunks.back().end) hunks.push_back({begin, end});
    hunks.back().end = end;
  }
  return hunks;
}

void AppendLine(std::string& out, char mark, std::string_view line) {
  out += mark;
  out += line;
  if (!line.ends_with('\n')) out += "\n\\ No newline at end of file\n";
}

// "12,3" as diffs count: from 1, and from 0 where a side has no lines.
std::string HunkRange(std::size_t first, std::size_t count) {
  const std::string start = std::to_string(count == 0 ? first : first + 1);
  return count == 1 ? start : start + "," + std::to_string(count);
}

// Appends a hunk and moves both lines behind it.
void AppendHunk(std::string& out, std::span<const Step> steps, const Lines& a, std::size_t& a_line, const Lines& b,
                std::size_t& b_line) {
  const std::size_t a_first = a_line, b_first = b_line;
  std::string body;
  for (const Step& step : steps) {
    AppendLine(body, step.Mark(), step.before ? a[a_line] : b[b_line]);
    a_line += step.before;
    b_line += step.after;
  }
  out += "@@ -" + HunkRange(a_first, a_line - a_first) + " +" + HunkRange(b_first, b_line - b_first) + " @@\n" + body;
}

}  // namespace

std::string UnifiedDiff(std::string_view before, std::string_view after, const std::string& before_name,
                        const std::string& after_name) {
  if (before == after) return {};
  const Lines a = SplitLines(before), b = SplitLines(after);
  Script script = MakeScript(a, b);
  SortChanges(script);
  std::string out = "--- " + before_name + "\n+++ " + after_name + "\n";
  std::size_t a_line = 0, b_line = 0, behind = 0;  // the lines that belong to the step `behind`
  for (const Hunk& hunk : HunksOf(script)) {
    a_line += hunk.begin - behind;  // between hunks all lines stay
    b_line += hunk.begin - behind;
    AppendHunk(out, std::span(script).subspan(hunk.begin, hunk.end - hunk.begin), a, a_line, b, b_line);
    behind = hunk.end;
  }
  return out;
}

}  // namespace sok
