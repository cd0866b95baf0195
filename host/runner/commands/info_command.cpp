// info: what an extension bundle is and offers.
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

std::string Joined(const Json& names) {
  std::string text;
  for (const auto& name : names) text += (text.empty() ? "" : ", ") + name.get<std::string>();
  return text.empty() ? "none" : text;
}

void Print(const Json& info) {
  const auto row = [](const char* label, const std::string& text) {
    std::printf("%-18s %s\n", label, ShownText(text).c_str());
  };
  row("bundle", info["bundle"]);
  row("identifier", info["identifier"].get<std::string>().empty() ? "none" : info["identifier"]);
  row("interface version", info["interface_version"]);
  row("languages", Joined(info["languages"]));
  for (const auto& command : info["commands"]) {
    row(("command " + std::to_string(command["number"].get<int>())).c_str(), command["texts"][0]);
    for (const int text : {1, 2}) row("", command["texts"][static_cast<std::size_t>(text)]);
  }
  row("missing texts", Joined(info["missing_texts"]));
  row("exports", Joined(info["interface"]));
  row("missing exports", Joined(info["missing_exports"]));
  row("other exports", Joined(info["other_exports"]));
  for (const auto& alert : info["alerts"]) row("alert", alert);
}

}  // namespace

void AddInfoCommand(CLI::App& app, int&) {
  CLI::App& command = *app.add_subcommand("info", "Show what an extension bundle is and offers");
  const auto plugin = std::make_shared<std::string>();
  const auto json = std::make_shared<bool>(false);
  command.add_option("BUNDLE", *plugin, "The extension bundle")->option_text("BUNDLE")->default_str("MeasureRests");
  command.add_flag("--json", *json, "As JSON");
  command.footer("Example:\n  sokrun info MyExtension.bundle --json");
  command.callback([plugin, json] {
    const Json info = DescribeExtension(plugin->empty() ? DefaultPlugin() : *plugin);
    if (*json) {
      std::printf("%s\n", Dump(info, 2).c_str());
    } else {
      Print(info);
    }
  });
}

}  // namespace sok
