// inspect: a score as the extension sees it, as tables.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "host/runner/commands/commands.h"
#include "host/runner/files/input.h"
#include "host/runner/report/frame_table.h"

namespace sok {
namespace {

struct Topic {
  const char* name;
  void (*print)(std::ostream&, const Score&);
};

constexpr Topic kTopics[] = {
    {"frames", PrintFrameTable}, {"records", PrintRecords}, {"texts", PrintTexts}, {"shapes", PrintShapes}};

}  // namespace

void AddInspectCommand(CLI::App& app, int&) {
  CLI::App& command = *app.add_subcommand("inspect", "Print a score as the extension sees it");
  const auto input = std::make_shared<std::string>();
  const auto wanted = std::make_shared<std::vector<std::string>>();
  std::vector<std::string> names;
  for (const Topic& topic : kTopics) names.emplace_back(topic.name);
  command.add_option("IN", *input, "A score, or - for stdin")->required();
  command.add_option("TOPIC", *wanted, "frames, records, texts or shapes; all of them when none is named")
      ->check(CLI::IsMember(names));
  command.footer("Examples:\n  sokrun inspect song.mxl\n  sokrun inspect song.mxl frames");
  command.callback([input, wanted] {
    const std::unique_ptr<Score> score = ReadScore(*input, {.document_data = true});
    for (const Topic& topic : kTopics) {
      if (!wanted->empty() && std::find(wanted->begin(), wanted->end(), topic.name) == wanted->end()) continue;
      if (wanted->size() != 1) std::cout << "== " << topic.name << '\n';
      topic.print(std::cout, *score);
    }
  });
}

}  // namespace sok
