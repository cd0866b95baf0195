/// @file
/// The host's notation engine bundle, the source of every host entry point, and the host's version.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

extern "C" {

/// The engine bundle. Null until InitializeGlobals finds it; never released. While it is null every host call answers
/// with its fallback, and a wrapper called then keeps its fallback for good.
extern CFBundleRef gSonkelBundle;

/// The host's version, 0 until the host's version call hands it over.
extern unsigned int SokVersion __attribute__((visibility("default")));

}  // extern "C"

/// Finds the engine bundle by its identifier, else takes the main bundle, and keeps it in gSonkelBundle. Returns 0 on
/// success, also when it was set before, and -1 when there is neither.
short InitializeGlobals();

/// The engine bundle; null before InitializeGlobals.
CFBundleRef GetSonkelBundleRef();

/// Whether this extension runs under a host of the given version: always.
bool SonkelVersionOK(int hostVersion);
