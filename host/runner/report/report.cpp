#include "host/runner/report/report.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <nlohmann/json.hpp>

#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

using Json = nlohmann::ordered_json;

long Count(const std::vector<Change>& changes, ChangeKind kind) {
  return std::count_if(changes.begin(), changes.end(), [kind](const Change& change) { return change.kind == kind; });
}

std::string Dump(const Json& json) { return ShownJson(json.dump(-1, ' ', false, Json::error_handler_t::replace)); }

const Staff& StaffOf(const Score& score, short slot) { return score.staves()[static_cast<std::size_t>(slot - 1)]; }
const Measure& MeasureOf(const Score& score, short measure) {
  return score.measures()[static_cast<std::size_t>(measure - 1)];
}

// "160 music, 14 whole rest": the reasons of what was kept, the most frequent first.
std::string KeptReasons(const ScoreReport& report) {
  std::map<Reason, long> counts;
  for (const ReportCell& cell : report.cells) {
    if (cell.verdict.outcome == Outcome::kKept) ++counts[cell.verdict.reason];
  }
  std::vector<std::pair<Reason, long>> sorted(counts.begin(), counts.end());
  std::stable_sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.second > b.second; });
  std::string text;
  for (const auto& [reason, count] : sorted) {
    std::string code(Code(reason));
    std::replace(code.begin(), code.end(), '-', ' ');
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + code;
  }
  return text;
}

std::string Summary(const ScoreReport& report) {
  std::string text = Counted(report.RestsIn(), "rest") + " in, " + Counted(report.RestsOut(), "rest") + " out; ";
  const long kept = report.selected - report.changed;
  text += std::to_string(kept) + " of " + Counted(report.selected, "staff-measure") + " kept";
  const std::string reasons = KeptReasons(report);
  if (!reasons.empty()) text += " (" + reasons + ")";
  if (!report.written.empty()) text += " -> " + (report.written == "-" ? "stdout" : report.written);
  if (!report.error.empty()) text += "; not written";
  return text;
}

}  // namespace

long ScoreReport::RestsIn() const { return Count(changes, ChangeKind::kFilled); }
long ScoreReport::RestsOut() const { return Count(changes, ChangeKind::kCleared); }

std::string StaffLabel(const Staff& staff) {
  return staff.part_staves > 1 ? staff.part_name + ", staff " + std::to_string(staff.staff) : staff.part_name;
}

std::string MeasureLabel(const Score& score, short measure) {
  return MeasureLabel(score.measures(), static_cast<std::size_t>(measure));
}

std::string ReportText(const Score& score, const ScoreReport& report) {
  std::size_t measure_width = 0, staff_width = 0;
  for (const ReportCell& cell : report.cells) {
    measure_width = std::max(measure_width, DisplayWidth(ShownText(MeasureLabel(score, cell.measure))));
    staff_width = std::max(staff_width, DisplayWidth(ShownText(StaffLabel(StaffOf(score, cell.slot)))));
  }
  std::vector<std::string> staff_labels;
  for (const Staff& staff : score.staves()) staff_labels.push_back(Padded(ShownText(StaffLabel(staff)), staff_width));

  std::string text = ShownText(report.file + ": " + report.title) + "\n";
  std::string measure_label;
  short labelled = 0;
  for (const ReportCell& cell : report.cells) {
    if (cell.measure != labelled) measure_label = Padded(ShownText(MeasureLabel(score, cell.measure)), measure_width);
    labelled = cell.measure;
    text += measure_label + "  " + staff_labels[static_cast<std::size_t>(cell.slot - 1)] + "  ";
    text += Name(cell.verdict.outcome);
    text += ": " + Text(cell.verdict, report.purpose);
    for (const std::string& note : cell.notes) text += "; " + ShownText(note);
    text += '\n';
  }
  return text + ShownText(Summary(report)) + "\n";
}

std::string JsonString(const std::string& text) { return Dump(Json(text)); }

std::string ReportJson(const Score& score, const ScoreReport& report) {
  Json head;
  head["file"] = report.file;
  head["status"] = !report.error.empty() ? "failed" : report.changed > 0 ? "changed" : "unchanged";
  if (!report.error.empty()) head["error"] = report.error;
  head["written"] = report.written.empty() ? Json() : Json(report.written);
  head["measures"] = score.measures().size();
  for (const Staff& staff : score.staves()) {
    head["staves"].push_back({{"part", staff.part_name}, {"part_id", staff.part_id}, {"staff", staff.staff}});
  }
  head["rests_in"] = report.RestsIn();
  head["rests_out"] = report.RestsOut();
  head["selected"] = report.selected;
  head["kept"] = report.selected - report.changed;
  head["warnings"] = report.warnings;
  head["alerts"] = report.alerts;
  for (const RecordChanges& records : report.records) {
    head["records"].push_back(
        {{"kind", records.kind}, {"changed", records.changed}, {"added", records.added}, {"removed", records.removed}});
  }
  // Cell by cell, so that a large score need not stand in memory as a tree.
  std::string text = Dump(head);
  text.back() = ',';
  text += "\"cells\":[";
  for (const ReportCell& cell : report.cells) {
    const Verdict& verdict = cell.verdict;
    Json row;
    row["measure"] = cell.measure;
    row["number"] = MeasureOf(score, cell.measure).number;
    row["staff"] = cell.slot;
    row["outcome"] = Name(verdict.outcome);
    row["reason"] = Code(verdict.reason);
    row["layer"] = verdict.layer < 0 ? Json() : Json(verdict.layer + 1);
    if (verdict.layer >= 0) row["layer_shown"] = verdict.layer_shown;
    row["text"] = Text(verdict, report.purpose);
    if (!cell.notes.empty()) row["notes"] = cell.notes;
    if (text.back() != '[') text += ',';
    text += Dump(row);
  }
  return text + "]}";
}

std::string FailureJson(const std::string& file, const std::string& error) {
  Json json;
  json["file"] = file;
  json["status"] = "failed";
  json["error"] = error;
  return Dump(json);
}

}  // namespace sok
