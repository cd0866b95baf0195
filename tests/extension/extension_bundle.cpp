#include "tests/extension/extension_bundle.h"

ExtensionBundle::ExtensionBundle() : bundle_(OpenBundle(SOK_EXTENSION_BUNDLE)) {}

int ExtensionBundle::Main() const {
  char name[] = "host";
  char* list[] = {name, nullptr};
  return Get<int(int, char**)>("main")(1, list);
}

int ExtensionBundle::Invoke(int index, EREGION* region, void* host) const {
  return Get<int(void*, int, EREGION*)>("SonkelExtensionInvoke")(host, index, region);
}

std::string ExtensionBundle::ExecutablePath() { return SOK_EXTENSION_BUNDLE "/Contents/MacOS/MeasureRests"; }

EREGION Region(int first_slot, int last_slot, int first_measure, int last_measure) {
  EREGION region{};
  region.start.slot = static_cast<short>(first_slot);
  region.start.measure = static_cast<short>(first_measure);
  region.end.slot = static_cast<short>(last_slot);
  region.end.measure = static_cast<short>(last_measure);
  region.start.position = 512;  // whole measures all the same
  region.end.position = 3;
  return region;
}
