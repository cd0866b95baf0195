#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"

CFBundleRef gSonkelBundle = nullptr;
unsigned int SokVersion = 0;

short InitializeGlobals() {
  // What the program's notation engine bundle is taken to be called; CFBundleIdentifier in the Info.plist of one's own
  // copy tells. Under another name it is not found, and host functions are looked for in the program itself.
  static const CFStringRef kEngineIdentifier = CFSTR("com.sonkel.NotationEngine");
  if (gSonkelBundle == nullptr) gSonkelBundle = CFBundleGetBundleWithIdentifier(kEngineIdentifier);
  if (gSonkelBundle == nullptr) gSonkelBundle = CFBundleGetMainBundle();
  return gSonkelBundle != nullptr ? 0 : -1;
}

CFBundleRef GetSonkelBundleRef() {
  if (gSonkelBundle == nullptr) return nullptr;
  CFBundleIsExecutableLoaded(gSonkelBundle);  // the query has the platform notice an engine that the host loaded
  return gSonkelBundle;
}

bool SonkelVersionOK(int) { return true; }
