// One score through the extension: read, invoked, explained, written.
//
// This folder has what that takes: what is asked for (options, selection), the bundle at work, the processes that it
// works in and how they end, traces.
#pragma once

#include <string>

#include "host/runner/files/input.h"
#include "host/runner/report/json.h"
#include "host/runner/run/options.h"

namespace sok {

// What comes of one file, ready to be put together with that of others. Travels between processes.
// NOLINTNEXTLINE(bugprone-exception-escape): moving a Json throws nothing
struct FileResult {
  int exit_code = 0;  // 0, kExitBadInput or kExitUsage
  bool changed = false;
  long rests_in = 0;
  long rests_out = 0;
  std::string out;  // for stdout
  std::string err;  // for stderr
  Json report;      // for the JSON report
  Json page;        // for the page

  std::string Serialize() const;
  static FileResult Deserialize(const std::string& bytes);  // throws Error where that makes no sense
};

// Runs one file and writes its result to `output` (nowhere when empty). Nothing is thrown: failures are results, too.
FileResult RunOnFile(const RunOptions& options, const Input& input, const std::string& output);

// A file that failed with a message.
FileResult Failure(const Input& input, int exit_code, const std::string& message);

}  // namespace sok
