#include "host/runner/run/description.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>

#include "host/errors.h"
#include "host/runner/run/batch.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/run/exports.h"
#include "host/runner/run/extension_exports.h"

namespace sok {
namespace {

namespace fs = std::filesystem;

// The interface's names: those of the entry points, their aliases, the others.
std::vector<std::string> InterfaceNames() {
  std::vector<std::string> names;
  for (const EntryPoint& entry : kEntryPoints) names.emplace_back(entry.name);
  for (const EntryPoint& entry : kEntryPoints) names.emplace_back(entry.alias);
  names.insert(names.end(), std::begin(kOtherExports), std::end(kOtherExports));
  return names;
}

// A text that the table lacks comes back as its key, a number or two of them.
bool IsMissingText(const std::string& text) {
  return !text.empty() && text.size() <= 13 && std::all_of(text.begin(), text.end(), [](unsigned char letter) {
    return std::isdigit(letter) != 0 || letter == ',' || letter == '-';
  });
}

std::vector<std::string> LanguageFolders(const std::string& plugin) {
  std::vector<std::string> languages;
  std::error_code error;
  for (const auto& folder : fs::directory_iterator(plugin + "/Contents/Resources", error)) {
    if (folder.path().extension() == ".lproj") languages.push_back(folder.path().stem().string());
  }
  std::sort(languages.begin(), languages.end());
  return languages;
}

void DescribeCommands(const BundleSession& bundle, Json& info) {
  info["commands"] = Json::array();
  info["missing_texts"] = Json::array();
  for (const ExtensionMenuItem& item : bundle.Commands()) {
    info["commands"].push_back({{"number", info["commands"].size()}, {"texts", item.texts}});
    for (const std::string& text : item.texts) {
      if (IsMissingText(text)) info["missing_texts"].push_back(text);
    }
  }
}

void DescribeExports(const BundleSession& bundle, Json& info) {
  info["interface"] = Json::array();
  info["missing_exports"] = Json::array();
  const std::vector<std::string> interface = InterfaceNames();
  for (const std::string& name : interface) {
    info[bundle.Address(name.c_str()) != nullptr ? "interface" : "missing_exports"].push_back(name);
  }
  info["other_exports"] = Json::array();
  for (const std::string& name : ExportedNames(bundle.Executable())) {
    if (std::ranges::find(interface, name) == interface.end()) info["other_exports"].push_back(name);
  }
}

// In a process of the extension's own.
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
  info["languages"] = LanguageFolders(plugin);
  DescribeCommands(bundle, info);
  DescribeExports(bundle, info);
  info["alerts"] = session.alerts;
  return info;
}

std::string DescriptionText(const std::string& plugin) {
  Json answer;
  try {
    answer = Describe(plugin);
  } catch (const std::exception& error) {
    answer = {{"error", error.what()}};
  }
  EndCopies();
  return answer.dump(-1, ' ', true, Json::error_handler_t::replace);
}

}  // namespace

Json DescribeExtension(const std::string& plugin) {
  Json description;
  std::string failure;
  const auto done = [&](std::size_t, const std::string& answer, const std::string& reason) {
    description = Json::parse(answer, nullptr, false);
    failure = reason;
  };
  RunInProcesses(1, {}, {[&](std::size_t) { return DescriptionText(plugin); }, done});
  if (failure.empty() && !description.is_object()) failure = "its process gave an answer that makes no sense";
  if (!failure.empty()) throw Error(plugin + ": " + failure);
  if (description.contains("error")) throw Error(description["error"]);
  return description;
}

}  // namespace sok
