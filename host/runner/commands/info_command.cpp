// info: what an extension bundle is and offers.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/runner/commands/commands.h"
#include "host/runner/report/text.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/run/exports.h"

namespace sok {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

constexpr const char* kInterfaceNames[] = {
    "SonkelExtensionVersion",
    "SonkelExtensionInit",
    "SonkelExtensionEnumerate_UTF16",
    "SonkelExtensionInvoke",
    "SonkelExtensionTerminate",
    "SonkelExtensionGetMenuStatus",
    "Ext_getversion",
    "Ext_init",
    "Ext_enumerate_UTF16",
    "Ext_invoke",
    "Ext_terminate",
    "Ext_getmenustatus",
    "main",
    "SonkelVersion",
    "SokVersion",
};

// A text that the table lacks comes back as its key, a number or two of them.
bool IsMissingText(const std::string& text) {
  return !text.empty() && text.size() <= 13 && std::all_of(text.begin(), text.end(), [](unsigned char letter) {
    return std::isdigit(letter) != 0 || letter == ',' || letter == '-';
  });
}

std::vector<std::string> Languages(const std::string& plugin) {
  std::vector<std::string> languages;
  std::error_code error;
  for (const auto& folder : fs::directory_iterator(plugin + "/Contents/Resources", error)) {
    if (folder.path().extension() == ".lproj") languages.push_back(folder.path().stem().string());
  }
  std::sort(languages.begin(), languages.end());
  return languages;
}

Json Describe(const std::string& plugin) {
  Document document;
  Session session;
  session.document = &document;
  const BundleSession bundle(plugin, session);

  Json info;
  info["bundle"] = plugin;
  info["identifier"] = bundle.Identifier();
  char version[16];
  std::snprintf(version, sizeof version, "0x%08X", bundle.InterfaceVersion());
  info["interface_version"] = version;
  info["languages"] = Languages(plugin);
  info["commands"] = Json::array();
  info["missing_texts"] = Json::array();
  for (const ExtensionMenuItem& item : bundle.Commands()) {
    info["commands"].push_back({{"number", info["commands"].size()}, {"texts", item.texts}});
    for (const std::string& text : item.texts) {
      if (IsMissingText(text)) info["missing_texts"].push_back(text);
    }
  }
  info["interface"] = Json::array();
  info["missing_exports"] = Json::array();
  for (const char* const name : kInterfaceNames) {
    info[bundle.Address(name) != nullptr ? "interface" : "missing_exports"].push_back(name);
  }
  info["other_exports"] = Json::array();
  for (const std::string& name : ExportedNames(bundle.Executable())) {
    const bool known =
        std::find(std::begin(kInterfaceNames), std::end(kInterfaceNames), name) != std::end(kInterfaceNames);
    if (!known) info["other_exports"].push_back(name);
  }
  info["alerts"] = session.alerts;
  return info;
}

std::string Joined(const Json& names) {
  std::string text;
  for (const auto& name : names) text += (text.empty() ? "" : ", ") + name.get<std::string>();
  return text.empty() ? "none" : text;
}

void Print(const Json& info) {
  const auto row = [](const char* label, const std::string& text) { std::printf("%-18s %s\n", label, text.c_str()); };
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
    const Json info = Describe(plugin->empty() ? DefaultPlugin() : *plugin);
    if (*json) {
      std::printf("%s\n", info.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    } else {
      Print(info);
    }
  });
}

}  // namespace sok
