// What a run did to one score, and its forms: lines for people, JSON for programs (docs/sokrun-json.md).
//
// This folder has all that is said of runs: explanations, tables, differences, pages with their pictures, and how text
// from elsewhere is shown.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/runner/report/explain.h"
#include "host/runner/report/frame_table.h"
#include "host/runner/report/json.h"
#include "host/runner/run/record_changes.h"

namespace sok {

// One staff in one measure of the selection.
struct ReportCell {
  short slot = 0;
  short measure = 0;
  Verdict verdict;
  std::vector<std::string> notes;

  bool Kept() const { return verdict.outcome == Outcome::kKept; }
};

struct ScoreReport {
  std::string file;
  std::string written;  // where the result went; empty: nowhere
  std::string error;    // why the result could not be written; empty when it could
  std::string title;    // the command's name in the menu
  Purpose purpose = Purpose::kOther;
  std::vector<Change> changes;
  std::vector<RecordChanges> records;
  std::vector<ReportCell> cells;  // by measure, then staff: those that changed; the kept ones where they are wanted
  std::map<Reason, long> kept;    // how many staff-measures were kept for a reason
  long selected = 0;              // staff-measures in the selection
  long changed = 0;               // staff-measures that changed
  std::vector<std::string> warnings;
  std::vector<std::string> alerts;                 // what the extension showed
  std::optional<std::vector<FrameChange>> frames;  // what changed, with --frames
  std::string diff;                                // what would change in the text, with --dry-run

  long RestsIn() const;
  long RestsOut() const;
};

// How much a report tells.
enum class Detail {
  kChanged,  // what changed
  kSummary,  // the same, and the reasons of what was kept, counted
  kAll,      // every staff-measure of the selection
};

// Names of a staff and a measure as users know them: "Piano, staff 2", "measure 12 (printed 11)".
std::string StaffLabel(const Staff& staff);
std::string MeasureLabel(const Score& score, short measure);

// Measures in rising order: "measures 2, 5-9 (printed 1, 4-8)".
std::string MeasuresLabel(const Score& score, const std::vector<short>& measures);

// "filled: no layer holds music; inside slash notation".
std::string Sentence(const ReportCell& cell, Purpose purpose);

// The reasons of what was kept, the most frequent first.
std::vector<std::pair<Reason, long>> KeptReasons(const ScoreReport& report);

// The lines: title, what changed, summary. What happened to a staff in several measures is one line, unless all is
// told.
std::string ReportText(const Score& score, const ScoreReport& report, Detail detail);

// Warnings that differ in nothing but numbers, one after the other, as one line.
std::vector<std::string> Folded(const std::vector<std::string>& warnings);

// "line 12: the text …", or the text alone for the whole score.
std::string WarningText(const Warning& warning);

// One line a text, each with a prefix, as a terminal shows it.
std::string PrefixedLines(const std::string& prefix, const std::vector<std::string>& texts);

// One object of the list of files.
Json ReportJson(const Score& score, const ScoreReport& report, Detail detail);
Json FailureJson(const std::string& file, const std::string& error);

}  // namespace sok
