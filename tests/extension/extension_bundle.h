// MeasureRests as a host holds it: the loaded bundle and its entry points.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "SokExtShared/SokEDK/Source/host_types.h"

class ExtensionBundle {
 public:
  // Opens the built bundle; ends the test program when that fails. The engine must be open before main() is called.
  ExtensionBundle();

  // The address of an exported name; null when it is not there.
  void* Find(const char* name) const;

  template <typename Function>
  Function* Get(const char* name) const {
    return reinterpret_cast<Function*>(Find(name));
  }

  int Main() const;  // with arguments as the host passes them
  int Invoke(int index, EREGION* region, void* host = nullptr) const;

  static std::string ExecutablePath();

 private:
  CFBundleRef bundle_;
};

// Whole measures: slots and measures from 1, both ends inside.
EREGION Region(int first_slot, int last_slot, int first_measure, int last_measure);
