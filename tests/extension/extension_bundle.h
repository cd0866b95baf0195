// MeasureRests as a host holds it: the loaded bundle and its entry points.
#pragma once

#include <string>

#include "SokExtShared/SokEDK/Source/host_types.h"
#include "tests/support/bundles.h"

class ExtensionBundle {
 public:
  // Opens the built bundle. The engine must be open before main() is called.
  ExtensionBundle();

  // What it exports under a name.
  template <typename Function>
  Function* Get(const char* name) const {
    return FunctionOf<Function>(bundle_, name);
  }

  int Main() const;  // with arguments as the host passes them
  int Invoke(int index, EREGION* region, void* host = nullptr) const;

  static std::string ExecutablePath();

 private:
  CFBundleRef bundle_;
};

// Whole measures: slots and measures from 1, both ends inside.
EREGION Region(int first_slot, int last_slot, int first_measure, int last_measure);
