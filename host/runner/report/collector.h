// Puts the results of all files together: what is printed as they come, the JSON report, the page.
#pragma once

#include "host/runner/report/json.h"
#include "host/runner/run/options.h"
#include "host/runner/run/run_score.h"

namespace sok {

class Collector {
 public:
  // `stdout_taken`: a score goes to stdout, so that the report has to go to stderr.
  Collector(const RunOptions& options, bool stdout_taken) : options_(options), stdout_taken_(stdout_taken) {}

  void Add(FileResult result);

  // Prints what is said at the end and writes the page; the exit code of the run. Throws Error.
  int Finish();

 private:
  Json Summary() const;

  const RunOptions& options_;
  const bool stdout_taken_;
  Json files_ = Json::array(), pages_ = Json::array();
  long file_count_ = 0, failed_ = 0, changed_ = 0, rests_in_ = 0, rests_out_ = 0;
  int exit_code_ = 0;
};

}  // namespace sok
