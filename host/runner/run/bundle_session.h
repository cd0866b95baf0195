// An extension bundle at work in this process: the engine bundle it finds the host in, and the calls that the host
// makes, in their order.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <vector>

#include "SokExtShared/SokEDK/Source/host_types.h"
#include "host/engine/session.h"
#include "host/runner/run/extension_exports.h"

namespace sok {

// Where bundles are built or installed: ../lib/sok beside this program.
std::string BundleFolder();

// The extension that is used when none is named.
std::string DefaultPlugin();

// The path of a bundle's executable. Throws Error that says what was looked for when there is no bundle or none in
// it.
std::string BundleExecutable(const std::string& plugin);

struct ExtensionMenuItem {
  std::string texts[3];  // the menu item, the change for the undo menu, the description; UTF-8
};

// Objects of this class share the one engine of the process, so at most one is alive at a time. The session outlives
// it.
class BundleSession {
 public:
  // Opens both bundles and calls the extension: main, version, init, enumerate. Throws Error that names the
  // bundle and what it lacks or refuses.
  BundleSession(const std::string& plugin, Session& session);
  ~BundleSession();  // calls the terminate entry point and takes the session from the engine
  BundleSession(const BundleSession&) = delete;
  BundleSession& operator=(const BundleSession&) = delete;

  std::string Identifier() const;  // empty when the bundle has none
  std::string Executable() const { return BundleExecutable(plugin_); }
  unsigned int InterfaceVersion() const { return interface_version_; }
  const std::vector<ExtensionMenuItem>& Commands() const { return commands_; }

  // Runs a command on a region; null when nothing is selected. The extension's answer: not 0 when it says that it
  // changed something.
  int Invoke(int command, EREGION* region);

  // The address of an exported name, null when it is missing.
  void* Address(const char* name) const;

 private:
  template <typename Function>
  Function Find(const EntryPoint& entry) const;
  template <typename Function>
  Function Require(const EntryPoint& entry) const;
  void Start();
  void Enumerate();

  std::string plugin_;
  Session& session_;
  CFBundleRef bundle_ = nullptr;
  unsigned int interface_version_ = 0;
  std::vector<ExtensionMenuItem> commands_;
};

}  // namespace sok
