/// @file
/// The one Carbon function that this project calls, for systems without the framework.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// A CFStringEncoding by another name.
typedef UInt32 TextEncoding;

/// The 8-bit encoding of the application's texts, as a CFStringEncoding too: Mac Roman.
CF_EXPORT TextEncoding GetApplicationTextEncoding(void);
