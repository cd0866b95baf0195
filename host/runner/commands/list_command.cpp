// list: the commands of extension bundles.
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/runner/commands/commands.h"
#include "host/runner/run/bundle_session.h"

namespace sok {
namespace {

void ListCommands(const std::string& plugin, bool json) {
  Document document;
  Session session;
  session.document = &document;
  const BundleSession bundle(plugin, session);
  for (const std::string& alert : session.alerts)
    std::fprintf(stderr, "%s: alert: %s\n", plugin.c_str(), alert.c_str());
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  int number = 0;
  for (const ExtensionMenuItem& item : bundle.Commands()) {
    if (json) {
      rows.push_back({{"number", number}, {"texts", item.texts}});
    } else {
      std::printf("%3d  %s\n", number, item.texts[0].c_str());
      if (!item.texts[2].empty()) std::printf("     %s\n", item.texts[2].c_str());
    }
    ++number;
  }
  if (json) std::printf("%s\n", rows.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace).c_str());
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
