#include "host/runner/report/html_report.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>

#include "host/runner/report/embedded.h"
#include "host/runner/report/engraving.h"
#include "host/runner/report/page.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

// Beyond this many staff-measures a grid shows only the measures in which something changed, and no more of them than
// this: browsers have limits.
constexpr std::size_t kLargestGrid = 40000;

// What a staff-measure looks like in the grid: what happened; kept ones by what is there, nothing, a rest, music.
std::string_view Look(const Verdict& verdict) {
  if (verdict.outcome != Outcome::kKept) return Name(verdict.outcome);
  switch (verdict.reason) {
    case Reason::kNothing:
    case Reason::kMissing:
      return "none";
    case Reason::kWholeRest:
    case Reason::kHiddenWholeRest:
    case Reason::kLooksWhole:
    case Reason::kRestBesideGrace:
    case Reason::kRestBesideOthers:
      return "rest";
    case Reason::kPassedOver:
      return "refused";
    default:
      return "music";
  }
}

const Measure& MeasureAt(const Score& score, short measure) {
  return score.measures()[static_cast<std::size_t>(measure - 1)];
}

std::string StaffName(const Score& score, short slot) {
  return StaffLabel(score.staves()[static_cast<std::size_t>(slot - 1)]);
}

using Cells = std::map<short, std::map<short, const ReportCell*>>;  // by slot, then measure

Json GridRow(const Score& score, const ScoreReport& report, const Cells::value_type& row,
             const std::vector<short>& measures) {
  const auto& [slot, cells] = row;
  Json all = Json::array();
  for (const short measure : measures) {
    const auto found = cells.find(measure);
    const ReportCell* const cell = found == cells.end() ? nullptr : found->second;
    all.push_back(cell == nullptr ? Json{{"kind", false}}
                                  : Json{{"kind", Look(cell->verdict)}, {"text", Sentence(*cell, report.purpose)}});
  }
  return {{"staff", StaffName(score, slot)}, {"cells", all}};
}

Json GridHead(const Score& score, const std::vector<short>& measures) {
  Json head = Json::array();
  for (const short measure : measures) {
    const std::string& number = MeasureAt(score, measure).number;
    head.push_back(
        {{"number", number.empty() ? std::to_string(measure) : number}, {"label", MeasureLabel(score, measure)}});
  }
  return head;
}

Json Grid(const Score& score, const ScoreReport& report, bool only_changed) {
  const bool large = report.cells.size() > kLargestGrid;
  Cells by_slot;
  std::set<short> wanted;
  for (const ReportCell& cell : report.cells) {
    if (!(large || only_changed) || !cell.Kept()) wanted.insert(cell.measure);
    by_slot[cell.slot][cell.measure] = &cell;
  }
  if (wanted.empty()) return {};
  std::vector<short> measures(wanted.begin(), wanted.end());
  const std::size_t most = std::max<std::size_t>(kLargestGrid / by_slot.size(), 1);
  const std::size_t left = measures.size() - std::min(measures.size(), most);
  measures.resize(measures.size() - left);

  Json grid = {{"hint", false}};
  if (large) grid["hint"] = "The score is large: the grid shows the measures in which something changed.";
  if (left > 0) {
    grid["hint"] = "The score is large: the grid shows the first " + std::to_string(most) + " changed measures.";
  }
  grid["measures"] = GridHead(score, measures);
  for (const auto& row : by_slot) grid["rows"].push_back(GridRow(score, report, row, measures));
  return grid;
}

// Each reason once, those of changes first, then the most frequent; with where a change happened.
Json Reasons(const Score& score, const ScoreReport& report) {
  std::map<std::string, std::vector<const ReportCell*>> by_text;
  for (const ReportCell& cell : report.cells) by_text[Sentence(cell, report.purpose)].push_back(&cell);
  std::vector<std::pair<std::string, std::vector<const ReportCell*>>> sorted(by_text.begin(), by_text.end());
  std::ranges::stable_sort(sorted, [](const auto& left, const auto& right) {
    const bool left_kept = left.second[0]->Kept(), right_kept = right.second[0]->Kept();
    return left_kept != right_kept ? right_kept : left.second.size() > right.second.size();
  });
  Json reasons = Json::array();
  for (const auto& [text, cells] : sorted) {
    Json reason = {
        {"kind", Look(cells[0]->verdict)}, {"count", cells.size()}, {"text", text}, {"places", !cells[0]->Kept()}};
    std::map<short, std::vector<short>> by_slot;
    for (const ReportCell* const cell : cells) by_slot[cell->slot].push_back(cell->measure);
    for (const auto& [slot, measures] : by_slot) {
      if (!cells[0]->Kept()) reason["where"].push_back(StaffName(score, slot) + ": " + MeasuresLabel(score, measures));
    }
    reasons.push_back(std::move(reason));
  }
  return reasons;
}

// "Measures 9-16 (printed 8-15)".
std::string Heading(const Score& score, const NumberRange& range) {
  std::vector<short> measures;
  for (int measure = range.first; measure <= range.last; ++measure) measures.push_back(static_cast<short>(measure));
  std::string label = MeasuresLabel(score, measures);
  label.front() = 'M';
  return label;
}

Json Pictures(const Score& score, const ScoreReport& report, const RunOptions& options) {
  if (report.changes.empty() || !report.error.empty()) return false;
  const Engraving engraving = Engrave(score, score.WriteText(options.write), report.changes, options.pictures);
  Json pictures = {{"trouble", false}, {"more", false}, {"version", false}, {"systems", Json::array()}};
  if (!engraving.trouble.empty()) {
    pictures["trouble"] = engraving.trouble;
    return pictures;
  }
  pictures["version"] = engraving.version;
  for (const SystemPicture& system : engraving.systems) {
    pictures["systems"].push_back(
        {{"heading", Heading(score, system.measures)}, {"before", system.before}, {"after", system.after}});
  }
  if (engraving.left > 0) {
    pictures["more"] = Counted(engraving.left, "more system") + " changed; --pictures " +
                       std::to_string(options.pictures + engraving.left) + " draws all.";
  }
  return pictures;
}

}  // namespace

Json PageData(const Score& score, const ScoreReport& report, const RunOptions& options) {
  Json data = {{"file", report.file},
               {"status", report.changed > 0 || !report.error.empty() ? "shown" : "unchanged"},
               {"command", report.title},
               {"error", report.error.empty() ? Json(false) : Json(report.error)},
               {"rests_in", Counted(report.RestsIn(), "rest")},
               {"rests_out", Counted(report.RestsOut(), "rest")},
               {"kept", report.selected - report.changed},
               {"selected", report.selected},
               {"reasons", Reasons(score, report)},
               {"lists", Json::array()}};
  const auto add_list = [&data](const char* title, const std::vector<std::string>& texts) {
    if (!texts.empty()) data["lists"].push_back({{"title", title}, {"texts", texts}});
  };
  add_list("Alerts", report.alerts);
  add_list("Warnings", Folded(report.warnings));
  data["has_reasons"] = !data["reasons"].empty();
  if (report.changed > 0 || options.inputs.size() == 1) data["grid"] = Grid(score, report, options.only_changed);
  data["pictures"] = Pictures(score, report, options);
  return data;
}

std::string ReportPage(const RunOptions& options, const std::string& summary, const Json& files) {
  const std::string title = options.purpose == Purpose::kOther ? "What the extension did" : "Whole-measure rests";
  Json data = {{"title", title},
               {"summary", summary},
               {"failed", Json::array()},
               {"scores", Json::array()},
               {"unchanged", Json::array()}};
  for (const Json& file : files) {
    const bool folded = file["status"] == "unchanged" && files.size() > 1;
    const char* const place = file["status"] == "failed" ? "failed" : folded ? "unchanged" : "scores";
    if (!folded || !options.only_changed) data[place].push_back(file);
  }
  data["has_unchanged"] = !data["unchanged"].empty();
  data["unchanged_count"] = Counted(static_cast<long>(data["unchanged"].size()), "score");
  return Page(title, kReportTemplate, data);
}

}  // namespace sok
