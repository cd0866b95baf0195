// list: the commands of extension bundles.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "host/runner/commands/commands.h"
#include "host/runner/report/json.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/run/description.h"

namespace sok {
namespace {

void ListCommands(const std::string& plugin, bool json) {
  const Json description = DescribeExtension(plugin);
  for (const auto& alert : description["alerts"]) {
    std::fprintf(stderr, "%s\n", ShownText(plugin + ": alert: " + alert.get<std::string>()).c_str());
  }
  if (json) {
    std::printf("%s\n", Dump(description["commands"], 2).c_str());
    return;
  }
  int number = 0;
  for (const auto& command : description["commands"]) {
    const auto texts = command["texts"].get<std::vector<std::string>>();
    std::printf("%3d  %s\n", number++, ShownText(texts[0]).c_str());
    if (!texts[2].empty()) std::printf("     %s\n", ShownText(texts[2]).c_str());
  }
}

}  // namespace

void AddListCommand(CLI::App& app, int&) {
  CLI::App& command = *app.add_subcommand("list", "List the commands of an extension");
  const auto plugin = std::make_shared<std::string>();
  const auto json = std::make_shared<bool>(false);
  command.add_option("BUNDLE,--plugin", *plugin, "The extension bundle")
      ->option_text("BUNDLE")
      ->default_str("MeasureRests");
  command.add_flag("--json", *json, "As JSON");
  command.footer("Examples:\n  sokrun list\n  sokrun list MyExtension.bundle");
  command.callback([plugin, json] { ListCommands(plugin->empty() ? DefaultPlugin() : *plugin, *json); });
}

}  // namespace sok
