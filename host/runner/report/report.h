// What a run did to one score, and its forms: lines for people, JSON for programs (docs/sokrun-json.md).
#pragma once

#include <string>
#include <vector>

#include "host/runner/report/explain.h"
#include "host/runner/run/record_changes.h"

namespace sok {

// One staff in one measure of the selection.
struct ReportCell {
  short slot = 0;
  short measure = 0;
  Verdict verdict;
  std::vector<std::string> notes;
};

struct ScoreReport {
  std::string file;
  std::string written;  // where the result went; empty: nowhere
  std::string error;    // why the result could not be written; empty when it could
  std::string title;    // the command's name in the menu
  Purpose purpose = Purpose::kOther;
  std::vector<Change> changes;
  std::vector<RecordChanges> records;
  std::vector<ReportCell> cells;  // by measure, then staff; all of the selection, or the changed ones
  long selected = 0;              // staff-measures in the selection
  long changed = 0;               // staff-measures that changed
  std::vector<std::string> warnings;
  std::vector<std::string> alerts;  // what the extension showed

  long RestsIn() const;
  long RestsOut() const;
};

// Names of a staff and a measure as users know them: "Piano, staff 2", "measure 12 (printed 11)".
std::string StaffLabel(const Staff& staff);
std::string MeasureLabel(const Score& score, short measure);

// The lines: title, staff-measures, summary.
std::string ReportText(const Score& score, const ScoreReport& report);

// One object of the list of files, as text.
std::string ReportJson(const Score& score, const ScoreReport& report);
std::string FailureJson(const std::string& file, const std::string& error);

// Text as a JSON string, quotation marks included. Bytes that are no UTF-8 become U+FFFD.
std::string JsonString(const std::string& text);

}  // namespace sok
