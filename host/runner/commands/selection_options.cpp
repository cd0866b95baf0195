#include "host/runner/commands/selection_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <thread>

#include "host/musicxml/text/markup.h"
#include "host/runner/report/text.h"

namespace sok {

void AddSelectionOptions(CLI::App& command, Selection& selection) {
  const auto add = [&command](const char* name, const char* description, const char* value,
                              const std::function<void(const std::string&)>& take) {
    return command.add_option_function<std::string>(name, take, description)
        ->option_text(value)
        ->group(kSelectionGroup);
  };
  add("--measures", "Measures by position from 1: 3-8,12,20-", "LIST",
      [&selection](const std::string& text) { selection.measures = ParseRanges(text, "--measures"); });
  add("--numbers", "Measures by printed number: 3-8,X1; may be repeated", "LIST",
      [&selection](const std::string& text) {
        for (const std::string_view number : Split(text, ',')) selection.numbers.emplace_back(Trimmed(number));
      })
      ->trigger_on_parse();
  add("--staves", "Staves from the top of the score: 1,3-4", "LIST",
      [&selection](const std::string& text) { selection.staves = ParseRanges(text, "--staves"); });
  command.add_option("--parts", selection.parts, "Parts by name, abbreviation or id; may be repeated")
      ->option_text("NAME")
      ->group(kSelectionGroup)
      ->allow_extra_args(false);
}

void AddJobsOption(CLI::App& command, int& jobs) {
  command
      .add_option_function<int>(
          "-j,--jobs",
          [&jobs](int wanted) {
            jobs = wanted > 0 ? wanted : static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
          },
          "Work on this many files at a time; 0: one a processor")
      ->option_text("N")
      ->default_str("1")
      ->check(CLI::Range(0, 1024));
}

}  // namespace sok
