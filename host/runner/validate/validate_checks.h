// The checks of `sokrun validate`. Each runs in a process of its own, on a fresh copy of one score.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/engine/document.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/validate/crash_watch.h"
#include "host/runner/validate/validate_watch.h"

namespace sok {

// A text that the string table lacks comes back as its number: "20003" or "20000,3".
bool IsResourceNumber(std::string_view text);

// One process's host with the extension loaded into it.
class CheckHost {
 public:
  // Throws Error when the extension cannot be loaded or does not start.
  CheckHost(const std::string& plugin, const Document& score, const HostFault& fault = {}, bool guard_frames = true);

  // An exported name as a function of its type; throws Error when it is missing.
  template <typename Function>
  Function Named(const char* name) const {
    return reinterpret_cast<Function>(Require(name));
  }
  void* Require(const char* name) const;

  const std::string plugin;
  Document document;
  HostWatch watch;
  CrashWatch crash_watch;
  Session session;
  BundleSession extension;
};

// Checks that hold for the extension as a whole. A check throws Error.
struct ExtensionCheck {
  std::string_view name;
  std::string_view what;
  void (*run)(CheckHost& host);
};
const std::vector<ExtensionCheck>& ExtensionChecks();

// The languages that a bundle has texts in, in alphabetical order; and whether all texts are there and have room in one
// of them, which is the user's.
std::vector<std::string> Languages(const std::string& plugin);
void CheckLanguage(CheckHost& host, const std::string& language);

}  // namespace sok
