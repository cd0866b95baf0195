#include "host/runner/report/collector.h"

#include <unistd.h>

#include <iostream>
#include <utility>

#include "host/runner/exit_codes.h"
#include "host/runner/files/output_file.h"
#include "host/runner/report/html_report.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

std::string SummaryText(const Json& summary) {
  const auto number = [&summary](const char* name) { return summary[name].get<long>(); };
  return Counted(number("files"), "file") + ": " + std::to_string(number("changed")) + " changed, " +
         std::to_string(number("unchanged")) + " unchanged, " + std::to_string(number("failed")) + " failed; " +
         Counted(number("rests_in"), "rest") + " in, " + Counted(number("rests_out"), "rest") + " out";
}

}  // namespace

void Collector::Add(FileResult result) {
  std::cerr << result.err << std::flush;
  // The bytes of a difference are for programs; a terminal gets them shown.
  std::cout << (isatty(STDOUT_FILENO) != 0 ? ShownLines(result.out) : result.out) << std::flush;
  if (options_.json) files_.push_back(std::move(result.report));
  if (!options_.html.empty()) pages_.push_back(std::move(result.page));
  ++file_count_;
  failed_ += result.exit_code != 0;
  changed_ += result.exit_code == 0 && result.changed;
  rests_in_ += result.rests_in;
  rests_out_ += result.rests_out;
  if (exit_code_ == 0) exit_code_ = result.exit_code;
}

Json Collector::Summary() const {
  return {{"files", file_count_}, {"changed", changed_},   {"unchanged", file_count_ - changed_ - failed_},
          {"failed", failed_},    {"rests_in", rests_in_}, {"rests_out", rests_out_}};
}

int Collector::Finish() {
  const Json summary = Summary();
  if (!options_.html.empty()) WriteFile(options_.html, ReportPage(options_, SummaryText(summary), pages_));
  std::ostream& out = stdout_taken_ ? std::cerr : std::cout;
  if (options_.json) {
    out << Dump({{"version", 2},
                 {"command", {{"plugin", options_.plugin}, {"number", options_.command}}},
                 {"files", std::move(files_)},
                 {"summary", summary}})
        << '\n';
  } else if (file_count_ > 1 && !options_.quiet) {
    out << SummaryText(summary) << '\n';
  }
  if (exit_code_ == 0 && options_.check && changed_ > 0) return kExitWouldChange;
  return exit_code_;
}

}  // namespace sok
