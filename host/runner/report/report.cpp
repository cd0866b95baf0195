#include "host/runner/report/report.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

long Count(const std::vector<Change>& changes, ChangeKind kind) {
  return std::count_if(changes.begin(), changes.end(), [kind](const Change& change) { return change.kind == kind; });
}

const Staff& StaffOf(const Score& score, short slot) { return score.staves()[static_cast<std::size_t>(slot - 1)]; }
const std::string& PrintedNumber(const Score& score, short measure) {
  return score.measures()[static_cast<std::size_t>(measure - 1)].number;
}

// "160 music, 14 whole rest".
std::string KeptText(const ScoreReport& report) {
  std::string text;
  for (const auto& [reason, count] : KeptReasons(report)) {
    std::string code(Code(reason));
    std::replace(code.begin(), code.end(), '-', ' ');
    text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + code;
  }
  return text;
}

std::string Summary(const ScoreReport& report, Detail detail) {
  std::string text = Counted(report.changed, "staff-measure") + " changed; ";
  if (report.purpose != Purpose::kOther) {
    text = Counted(report.RestsIn(), "rest") + " in, " + Counted(report.RestsOut(), "rest") + " out; ";
  }
  const long kept = report.selected - report.changed;
  text += std::to_string(kept) + " of " + Counted(report.selected, "staff-measure") + " kept";
  const std::string reasons = detail == Detail::kChanged ? "" : KeptText(report);
  if (!reasons.empty()) text += " (" + reasons + ")";
  if (!report.written.empty()) text += " -> " + (report.written == "-" ? "stdout" : report.written);
  if (!report.error.empty()) text += "; not written";
  return text;
}

// What one line of the report tells: a staff, its measures, what happened to them.
struct ReportLine {
  short slot = 0;
  std::vector<short> measures;
  std::string sentence;
};

bool Tells(Detail detail, const ReportCell& cell) { return detail == Detail::kAll || !cell.Kept(); }

std::vector<ReportLine> MakeLines(const ScoreReport& report, Detail detail) {
  std::vector<ReportLine> lines;
  std::map<std::pair<short, std::string>, std::size_t> known;  // lines by staff and sentence
  for (const ReportCell& cell : report.cells) {
    if (!Tells(detail, cell)) continue;
    std::string sentence = Sentence(cell, report.purpose);
    const auto [line, is_new] = known.try_emplace({cell.slot, sentence}, lines.size());
    if (is_new || detail == Detail::kAll) {
      lines.push_back({cell.slot, {cell.measure}, std::move(sentence)});
    } else {
      lines[line->second].measures.push_back(cell.measure);
    }
  }
  if (detail != Detail::kAll) std::ranges::stable_sort(lines, {}, &ReportLine::slot);
  return lines;
}

// Digits as one sign each run, so that texts of one kind are the same.
std::string WithoutNumbers(const std::string& text) {
  std::string kind;
  for (const char letter : text) {
    const bool digit = std::isdigit(static_cast<unsigned char>(letter)) != 0;
    if (!digit || kind.empty() || kind.back() != '#') kind += digit ? '#' : letter;
  }
  return kind;
}

// Behind the measures that follow one another from index `begin` on.
std::size_t RunEnd(const std::vector<short>& measures, std::size_t begin) {
  std::size_t end = begin + 1;
  while (end < measures.size() && measures[end] == measures[end - 1] + 1) ++end;
  return end;
}

Json CellJson(const Score& score, const ReportCell& cell, Purpose purpose) {
  const Verdict& verdict = cell.verdict;
  Json row = {{"measure", cell.measure},
              {"number", PrintedNumber(score, cell.measure)},
              {"staff", cell.slot},
              {"outcome", Name(verdict.outcome)},
              {"reason", Code(verdict.reason)},
              {"layer", verdict.layer < 0 ? Json() : Json(verdict.layer + 1)}};
  if (verdict.layer >= 0) row["layer_shown"] = verdict.layer_shown;
  row["text"] = VerdictText(verdict, purpose);
  if (!cell.notes.empty()) row["notes"] = cell.notes;
  return row;
}

std::string_view Status(const ScoreReport& report) {
  if (!report.error.empty()) return "failed";
  return !report.changes.empty() ? "changed" : "unchanged";
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

std::string MeasuresLabel(const Score& score, const std::vector<short>& measures) {
  if (measures.size() == 1) return MeasureLabel(score, measures.front());
  std::string positions, printed;
  bool differ = false;
  for (std::size_t i = 0; i < measures.size();) {
    const std::size_t end = RunEnd(measures, i);
    const char* const comma = i == 0 ? "" : ", ";
    const std::string first = PrintedNumber(score, measures[i]), last = PrintedNumber(score, measures[end - 1]);
    const std::string range = RangeText(measures[i], measures[end - 1]);
    const std::string names = i + 1 == end ? first : first + "-" + last;
    positions += comma + range;
    printed += comma + names;
    differ = differ || (!first.empty() && !last.empty() && names != range);
    i = end;
  }
  return "measures " + positions + (differ ? " (printed " + printed + ")" : "");
}

std::string Sentence(const ReportCell& cell, Purpose purpose) {
  std::string text(Name(cell.verdict.outcome));
  // The notes of other changes say which layers have what.
  const bool told = cell.verdict.reason != Reason::kOtherChange;
  if (told) text += ": " + VerdictText(cell.verdict, purpose);
  for (const std::string& note : cell.notes) text += (told || &note != &cell.notes.front() ? "; " : ": ") + note;
  return text;
}

std::vector<std::pair<Reason, long>> KeptReasons(const ScoreReport& report) {
  std::vector<std::pair<Reason, long>> sorted(report.kept.begin(), report.kept.end());
  std::ranges::stable_sort(sorted, std::greater(), &std::pair<Reason, long>::second);
  return sorted;
}

std::string ReportText(const Score& score, const ScoreReport& report, Detail detail) {
  const std::vector<ReportLine> lines = MakeLines(report, detail);
  std::size_t staff_width = 0;
  for (const ReportLine& line : lines) {
    staff_width = std::max(staff_width, DisplayWidth(ShownText(StaffLabel(StaffOf(score, line.slot)))));
  }
  std::string text = ShownText(report.file + ": " + report.title) + "\n";
  for (const ReportLine& line : lines) {
    text += Padded(ShownText(StaffLabel(StaffOf(score, line.slot))), staff_width) + "  " +
            ShownText(MeasuresLabel(score, line.measures) + "  " + line.sentence) + "\n";
  }
  return text + ShownText(Summary(report, detail)) + "\n";
}

std::vector<std::string> Folded(const std::vector<std::string>& warnings) {
  std::vector<std::string> folded;
  for (std::size_t i = 0; i < warnings.size();) {
    std::size_t end = i + 1;
    while (end < warnings.size() && WithoutNumbers(warnings[end]) == WithoutNumbers(warnings[i])) ++end;
    const auto more = static_cast<long>(end - i - 1);
    folded.push_back(warnings[i] + (more > 0 ? " (and " + std::to_string(more) + " more like this)" : ""));
    i = end;
  }
  return folded;
}

std::string WarningText(const Warning& warning) {
  return (warning.line > 0 ? "line " + std::to_string(warning.line) + ": " : "") + warning.text;
}

std::string PrefixedLines(const std::string& prefix, const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) lines += ShownText(prefix + text) + "\n";
  return lines;
}

Json ReportJson(const Score& score, const ScoreReport& report, Detail detail) {
  Json json = {{"file", report.file}, {"status", Status(report)}};
  if (!report.error.empty()) json["error"] = report.error;
  json["written"] = report.written.empty() ? Json() : Json(report.written);
  json["measures"] = score.measures().size();
  json["staves"] = Json::array();
  for (const Staff& staff : score.staves()) {
    json["staves"].push_back({{"part", staff.part_name}, {"part_id", staff.part_id}, {"staff", staff.staff}});
  }
  json["rests_in"] = report.RestsIn();
  json["rests_out"] = report.RestsOut();
  json["selected"] = report.selected;
  json["kept"] = report.selected - report.changed;
  json["kept_reasons"] = Json::object();
  for (const auto& [reason, count] : KeptReasons(report)) json["kept_reasons"][std::string(Code(reason))] = count;
  json["warnings"] = report.warnings;
  json["alerts"] = report.alerts;
  for (const RecordChanges& records : report.records) {
    json["records"].push_back(
        {{"kind", records.kind}, {"changed", records.changed}, {"added", records.added}, {"removed", records.removed}});
  }
  json["cells"] = Json::array();
  for (const ReportCell& cell : report.cells) {
    if (Tells(detail, cell)) json["cells"].push_back(CellJson(score, cell, report.purpose));
  }
  if (report.frames) json["frames"] = FramesJson(*report.frames);
  if (!report.diff.empty()) json["diff"] = report.diff;
  return json;
}

Json FailureJson(const std::string& file, const std::string& error) {
  return {{"file", file}, {"status", "failed"}, {"error", error}};
}

}  // namespace sok
