#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"

CFBundleRef gSonkelBundle = nullptr;
unsigned int SokVersion = 0;

short InitializeGlobals() {
  if (gSonkelBundle == nullptr) gSonkelBundle = CFBundleGetBundleWithIdentifier(CFSTR("com.sonkel.NotationEngine"));
  if (gSonkelBundle == nullptr) gSonkelBundle = CFBundleGetMainBundle();
  return gSonkelBundle != nullptr ? 0 : -1;
}

CFBundleRef GetSonkelBundleRef() {
  if (gSonkelBundle == nullptr) return nullptr;
  CFBundleIsExecutableLoaded(gSonkelBundle);  // the query has the platform notice an engine that the host loaded
  return gSonkelBundle;
}

bool SonkelVersionOK(int) { return true; }
