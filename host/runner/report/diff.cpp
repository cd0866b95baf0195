#include "host/runner/report/diff.h"

#include <algorithm>
#include <vector>

namespace sok {
namespace {

using Lines = std::vector<std::string_view>;

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

// Before and after: a line that stays has both marks set, one that goes only `before`, one that comes only `after`.
struct Step {
  bool before = false;
  bool after = false;
};
using Script = std::vector<Step>;

// The shortest edit script of two short stretches, by Myers' greedy algorithm, and where they are too different for it
// one stretch for the other.
void AppendScript(const Lines& a, std::size_t a_begin, std::size_t a_end, const Lines& b, std::size_t b_begin,
                  std::size_t b_end, Script& script) {
  const auto keep = [&](std::size_t count) { script.insert(script.end(), count, Step{true, true}); };
  std::size_t tail = 0;
  while (a_begin < a_end && b_begin < b_end && a[a_begin] == b[b_begin]) ++a_begin, ++b_begin, keep(1);
  while (a_begin < a_end && b_begin < b_end && a[a_end - 1] == b[b_end - 1]) --a_end, --b_end, ++tail;

  const int n = static_cast<int>(a_end - a_begin), m = static_cast<int>(b_end - b_begin);
  const int limit = std::min(n + m, 2000);
  std::vector<std::vector<int>> furthest;  // per number of edits, by diagonal from -edits to edits
  const auto at = [&](int edits, int diagonal) -> int& {
    const int place = diagonal + edits;
    return furthest[static_cast<std::size_t>(edits)][static_cast<std::size_t>(place)];
  };
  // Whether the best way to a diagonal is by a line that comes (down) and not by one that goes.
  const auto comes = [&](int edits, int k) {
    return k == -edits || (k != edits && at(edits - 1, k - 1) < at(edits - 1, k + 1));
  };
  bool found = n == 0 && m == 0;
  int edits = 0;
  for (; !found && edits <= limit; ++edits) {
    furthest.emplace_back(static_cast<std::size_t>(2 * edits + 1));
    for (int k = -edits; k <= edits && !found; k += 2) {
      int x = edits == 0 ? 0 : comes(edits, k) ? at(edits - 1, k + 1) : at(edits - 1, k - 1) + 1;
      while (x < n && x - k < m && x - k >= 0 &&
             a[a_begin + static_cast<std::size_t>(x)] == b[b_begin + static_cast<std::size_t>(x - k)]) {
        ++x;
      }
      at(edits, k) = x;
      found = x >= n && x - k >= m;
    }
  }
  if (found) {
    Script backwards;
    int x = n, y = m;
    for (int e = edits - 1; e > 0; --e) {
      const int k = x - y;
      const bool came = comes(e, k);
      const int previous = came ? at(e - 1, k + 1) : at(e - 1, k - 1);
      const int start = came ? previous : previous + 1;  // where the run of equal lines begins
      backwards.insert(backwards.end(), static_cast<std::size_t>(x - start), Step{true, true});
      backwards.push_back(came ? Step{false, true} : Step{true, false});
      x = previous;
      y = previous - (came ? k + 1 : k - 1);
    }
    backwards.insert(backwards.end(), static_cast<std::size_t>(x), Step{true, true});
    script.insert(script.end(), backwards.rbegin(), backwards.rend());
  } else {
    script.insert(script.end(), static_cast<std::size_t>(n), Step{true, false});
    script.insert(script.end(), static_cast<std::size_t>(m), Step{false, true});
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

Script MakeScript(const Lines& a, const Lines& b) {
  Script script;
  const std::vector<std::size_t> in_a = Anchors(a), in_b = Anchors(b);
  if (in_a.size() != in_b.size()) {
    AppendScript(a, 0, a.size(), b, 0, b.size(), script);
  } else {
    for (std::size_t i = 0; i + 1 < in_a.size(); ++i) {
      AppendScript(a, in_a[i], in_a[i + 1], b, in_b[i], in_b[i + 1], script);
    }
  }
  return script;
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

}  // namespace

std::string UnifiedDiff(std::string_view before, std::string_view after, const std::string& before_name,
                        const std::string& after_name) {
  if (before == after) return {};
  const Lines a = SplitLines(before), b = SplitLines(after);
  const Script script = MakeScript(a, b);
  const auto changes = [&script](std::size_t i) { return script[i].before != script[i].after; };

  std::string out = "--- " + before_name + "\n+++ " + after_name + "\n";
  std::size_t a_line = 0, b_line = 0, i = 0;  // a_line and b_line belong to step i
  while (i < script.size()) {
    std::size_t first = i;
    while (first < script.size() && !changes(first)) ++first;
    if (first == script.size()) break;
    const std::size_t begin = std::max(i, first - std::min(first, kContext));
    std::size_t last = first;  // the last change that is near enough to share the hunk
    for (std::size_t next = first; next < script.size() && next <= last + 2 * kContext + 1; ++next) {
      if (changes(next)) last = next;
    }
    const std::size_t end = std::min(last + kContext + 1, script.size());
    a_line += begin - i;
    b_line += begin - i;
    std::string body;
    std::size_t a_count = 0, b_count = 0;
    for (std::size_t step = begin; step < end; ++step) {
      const auto [in_a, in_b] = script[step];
      AppendLine(body, in_a && in_b ? ' ' : in_a ? '-' : '+', in_a ? a[a_line + a_count] : b[b_line + b_count]);
      a_count += in_a;
      b_count += in_b;
    }
    out += "@@ -" + HunkRange(a_line, a_count) + " +" + HunkRange(b_line, b_count) + " @@\n" + body;
    a_line += a_count;
    b_line += b_count;
    i = end;
  }
  return out;
}

}  // namespace sok
