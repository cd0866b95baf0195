#include "host/runner/validate/validate_checks.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <filesystem>
#include <map>

#include "host/engine/host_text.h"
#include "host/errors.h"
#include "host/runner/run/extension_exports.h"
#include "host/runner/run/host_functions.h"
#include "host/runner/validate/validate_commands.h"
#include "platform/SokPlatform.h"

namespace sok {
namespace {

constexpr const char* kTable = "Localizable.strings";

namespace fs = std::filesystem;

// The record that the extension fills, with bytes around it that it must leave alone.
struct GuardedRecord {
  static constexpr unsigned char kGuard = 0xA5;

  GuardedRecord() { std::memset(this, kGuard, sizeof *this); }
  bool Untouched() const { return Holds(&record, sizeof record) && GuardsHold(); }
  bool GuardsHold() const { return Holds(before, sizeof before) && Holds(behind, sizeof behind); }
  static bool Holds(const void* start, std::size_t count) {
    const auto* const bytes = static_cast<const unsigned char*>(start);
    return std::all_of(bytes, bytes + count, [](unsigned char byte) { return byte == kGuard; });
  }

  unsigned char before[64];
  EMENUCOMMAND record;
  unsigned char behind[256];
};

void Expect(bool holds, const std::string& message) {
  if (!holds) throw Error(message);
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string ContentsOf(const std::string& plugin) {
  return fs::is_directory(plugin + "/Contents") ? plugin + "/Contents/" : plugin + "/";
}

using Texts = std::map<std::string, std::string>;

// The texts in a property list; throws Error when it cannot be read.
Texts ReadTexts(const std::string& path) {
  Texts texts;
  const auto keep = [](void* all, const char* key, const char* text) { static_cast<Texts*>(all)->emplace(key, text); };
  const int line = SokPlatformReadTexts(path.c_str(), keep, &texts);
  Expect(line >= 0, path + ": cannot be read");
  Expect(line == 0, path + ": line " + std::to_string(line) + " is wrong, so that nothing in the file counts");
  return texts;
}

void CheckBundle(CheckHost& host) {
  const std::string path = ContentsOf(host.plugin) + "Info.plist";
  const Texts information = ReadTexts(path);
  for (const char* key : {"CFBundleExecutable", "CFBundleIdentifier"}) {
    Expect(information.contains(key) && !information.at(key).empty(), path + ": has no " + key);
  }
}

void CheckSymbols(CheckHost& host) {
  std::string missing;
  const auto look = [&](const char* name) {
    if (host.extension.Address(name) == nullptr) missing += std::string(missing.empty() ? "" : ", ") + name;
  };
  for (const auto& [name, alias] : kEntryPoints) look(name), look(alias);
  for (const char* const name : kOtherExports) look(name);
  Expect(missing.empty(), "does not export " + missing);
  Expect(*host.Named<const int*>("SonkelVersion") == 2005, "SonkelVersion is not 2005");
}

void CheckHiddenNames(CheckHost& host) {
  for (const std::string& name : HostFunctionNames()) {
    Expect(host.extension.Address(name.c_str()) == nullptr,
           "exports " + name + ", which the host exports, too: a call can land in the wrong one");
  }
  Expect(host.extension.Address("gSonkelBundle") == nullptr, "exports gSonkelBundle, which every extension has");
}

void CheckVersion(CheckHost& host) {
  const auto* const kept = host.Named<const unsigned int*>("SokVersion");
  constexpr std::pair<const char*, unsigned int> kCalls[] = {{"SonkelExtensionVersion", 0x1A000000},
                                                             {"Ext_getversion", 0x0A123456}};
  for (const auto& [name, version] : kCalls) {
    const unsigned int answer = host.Named<VersionFunction>(name)(version);
    Expect(answer == kInterfaceVersion, std::string(name) + " does not answer the interface version 0x19300000");
    Expect(*kept == version, std::string(name) + " does not keep the host's version in SokVersion");
  }
}

// An answer that no entry point gives.
[[gnu::noinline]] int NoAnswer() {
  volatile int number = 0x5AFE;
  return number;
}

// What a function answers; one that answers nothing leaves what the call before it did.
[[gnu::noinline]] int AnswerOf(int (*function)()) { return NoAnswer() == 0 ? 0 : function(); }

void CheckStart(CheckHost& host) {
  const auto start = host.Named<MainFunction>("main");
  char* list[] = {nullptr};
  Expect(start(0, list) == 0 && start(1, nullptr) == 0, "main does not answer 0 without arguments");
  Expect(start(1, list) == 1, "main does not answer 1 a second time");
  for (const char* name : {"SonkelExtensionInit", "Ext_init"}) {
    unsigned int word = 0xFFFFFFFF;
    const auto init = host.Named<InitFunction>(name);
    Expect(init(&host, &word) == 1, std::string(name) + " does not answer 1");
    Expect(word == 0, std::string(name) + " does not set the word to 0");
  }
  for (const char* name : {"SonkelExtensionGetMenuStatus", "Ext_getmenustatus"}) {
    const auto status = host.Named<MenuStatusFunction>(name);
    Expect(AnswerOf(status) == 1, std::string(name) + " does not answer 1");
  }
  for (const char* name : {"SonkelExtensionTerminate", "Ext_terminate"}) host.Named<TerminateFunction>(name)();
}

// Ended within its 128 units, not empty, UTF-16, and not merely the number of a resource.
void CheckText(const unsigned short (&units)[128], const std::string& where) {
  const auto* const end = std::find(std::begin(units), std::end(units), 0);
  Expect(end != std::end(units), where + " is not ended within its 128 units");
  Expect(end != units, where + " is empty");
  for (const auto* unit = units; unit != end; ++unit) {
    const bool high = *unit >= 0xD800 && *unit < 0xDC00, low = *unit >= 0xDC00 && *unit < 0xE000;
    Expect(!low && (!high || (unit[1] >= 0xDC00 && unit[1] < 0xE000)), where + " is cut inside of a character");
    if (high) ++unit;
  }
  const std::string text = Utf8FromUtf16(units, std::size(units));
  Expect(!IsResourceNumber(text), where + " is missing in the string table: " + Quoted(text));
}

bool SameText(const unsigned short (&left)[128], const unsigned short (&right)[128]) {
  return Utf8FromUtf16(left, std::size(left)) == Utf8FromUtf16(right, std::size(right));
}

void CheckTexts(CheckHost& host) {
  const auto count = static_cast<int>(host.extension.Commands().size());
  Expect(count > 0, "has no command");
  Expect(count < kMostCommands, "has commands without end");
  for (int command = 0; command < count; ++command) {
    EMENUCOMMAND first{};
    for (const char* name : {"SonkelExtensionEnumerate_UTF16", "Ext_enumerate_UTF16"}) {
      const std::string where = std::string(name) + ", command " + std::to_string(command);
      GuardedRecord guarded;
      Expect(host.Named<EnumerateFunction>(name)(&host, command, &guarded.record) == 1, where + ": does not answer 1");
      Expect(guarded.GuardsHold(), where + ": writes beyond the record");
      for (int i = 0; i < 3; ++i) CheckText(guarded.record.text[i], where + ": text " + std::to_string(i));
      Expect(guarded.record.active == 1, where + ": the word behind the texts is not 1");
      for (int i = 0; i < 3 && first.active == 1; ++i) {
        Expect(SameText(first.text[i], guarded.record.text[i]),
               where + ": text " + std::to_string(i) + " is another one");
      }
      first = guarded.record;
    }
  }
}

// A text of the table that is longer than what the command's record shows of it.
void CheckRoom(const Texts& texts, const std::string& shown, const std::string& path) {
  constexpr std::size_t kLikelyCut = 100;  // bytes; no two texts begin alike for so long
  if (shown.size() < kLikelyCut) return;
  for (const auto& [key, text] : texts) {
    Expect(text.size() <= shown.size() || !text.starts_with(shown.substr(0, shown.size() - 3)),
           path + ": " + key + " has more than the 127 units that a menu text may have: " + Quoted(text));
  }
}

void CheckUnknownCommands(CheckHost& host) {
  const auto count = static_cast<int>(host.extension.Commands().size());
  for (const int command : {count, count + 1, 0x7FFF, 0xFFFF, INT_MAX, -1}) {
    for (const char* name : {"SonkelExtensionEnumerate_UTF16", "Ext_enumerate_UTF16"}) {
      const std::string where = std::string(name) + ", command " + std::to_string(command);
      GuardedRecord guarded;
      Expect(host.Named<EnumerateFunction>(name)(&host, command, &guarded.record) == 0, where + ": does not answer 0");
      Expect(guarded.Untouched(), where + ": writes into the record though it answers 0");
    }
    if (command < 0) continue;
    const std::size_t calls = host.watch.calls().size();
    EREGION region = RegionOf(host.document, Scope::kWholeScore);
    Expect(host.extension.Invoke(command, &region) == 0 && host.watch.calls().size() == calls,
           "invoked as command " + std::to_string(command) + ", which it does not have, does not answer 0 at once");
  }
}

void CheckNoSelection(CheckHost& host) {
  for (const char* name : {"SonkelExtensionInvoke", "Ext_invoke"}) {
    for (int command = 0; command < static_cast<int>(host.extension.Commands().size()); ++command) {
      const std::string where = std::string(name) + ", command " + std::to_string(command) + " without a selection: ";
      host.session.alerts.clear();
      const std::size_t calls = host.watch.calls().size();
      Expect(host.Named<InvokeFunction>(name)(&host, command, nullptr) == 0, where + "does not answer 0");
      Expect(host.session.alerts.size() == 1, where + "does not show one alert");
      Expect(host.watch.calls().size() == calls + 1, where + "does more than show the alert");
      const std::string& alert = host.session.alerts[0];
      Expect(!alert.empty() && !IsResourceNumber(alert), where + "shows the alert " + Quoted(alert));
      for (const auto& [kind, finding] : host.watch.AllFindings()) throw Error(where + finding);
    }
  }
}

}  // namespace

bool IsResourceNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789,") == std::string_view::npos;
}

CheckHost::CheckHost(const std::string& bundle, const Document& score, const HostFault& fault, bool guard_frames)
    : plugin(bundle),
      document(score),
      watch(fault, document),
      crash_watch(watch),
      session{.document = &document, .observer = &watch, .alerts = {}, .guard_frames = guard_frames},
      extension(plugin, session) {
  if (document.PartCount() == 0) document.AddPart("Another");  // so that there is one to go to, and back
}

void* CheckHost::Require(const char* name) const {
  void* const address = extension.Address(name);
  Expect(address != nullptr, std::string("does not export ") + name);
  return address;
}

std::vector<std::string> Languages(const std::string& plugin) {
  std::vector<std::string> languages;
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(ContentsOf(plugin) + "Resources", none)) {
    if (fs::exists(entry.path() / kTable)) languages.push_back(entry.path().stem().string());
  }
  std::ranges::sort(languages);
  return languages;
}

void CheckLanguage(CheckHost& host, const std::string& language) {
  const auto path = [&](const std::string& name) {
    return ContentsOf(host.plugin) + "Resources/" + name + ".lproj/" + kTable;
  };
  const Texts texts = ReadTexts(path(language));
  for (const std::string& other : Languages(host.plugin)) {
    std::string missing;
    if (other == language) continue;
    for (const auto& [key, text] : ReadTexts(path(other))) {
      if (!texts.contains(key)) missing += (missing.empty() ? "" : ", ") + key;
    }
    Expect(missing.empty(), path(language) + ": lacks " + missing + ", which " + other + " has");
  }
  for (const ExtensionMenuItem& item : host.extension.Commands()) {
    for (const std::string& shown : item.texts) CheckRoom(texts, shown, path(language));
  }
}

const std::vector<ExtensionCheck>& ExtensionChecks() {
  static const std::vector<ExtensionCheck> checks = {
      {"bundle", "Info.plist has what hosts look for", CheckBundle},
      {"symbols", "the interface's names are exported", CheckSymbols},
      {"hidden-names", "the host's names are not", CheckHiddenNames},
      {"version", "version handshake, by both names", CheckVersion},
      {"start", "main, initialisation, menu status, termination, by both names", CheckStart},
      {"texts", "the commands' records, by both names", CheckTexts},
      {"unknown-commands", "numbers that name no command leave the record alone", CheckUnknownCommands},
      {"no-selection", "an alert, by both names", CheckNoSelection},
  };
  return checks;
}

}  // namespace sok
