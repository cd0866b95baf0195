// What an extension exports for its host: entry points, each by two names, and three names beside them.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

namespace sok {

struct EntryPoint {
  const char* name;
  const char* alias;  // stands in for a name that is missing
};

inline constexpr EntryPoint kVersionEntry = {"SonkelExtensionVersion", "Ext_getversion"};
inline constexpr EntryPoint kInitEntry = {"SonkelExtensionInit", "Ext_init"};
inline constexpr EntryPoint kEnumerateEntry = {"SonkelExtensionEnumerate_UTF16", "Ext_enumerate_UTF16"};
inline constexpr EntryPoint kInvokeEntry = {"SonkelExtensionInvoke", "Ext_invoke"};
inline constexpr EntryPoint kTerminateEntry = {"SonkelExtensionTerminate", "Ext_terminate"};
inline constexpr EntryPoint kMenuStatusEntry = {"SonkelExtensionGetMenuStatus", "Ext_getmenustatus"};

inline constexpr EntryPoint kEntryPoints[] = {kVersionEntry, kInitEntry,      kEnumerateEntry,
                                              kInvokeEntry,  kTerminateEntry, kMenuStatusEntry};
inline constexpr const char* kOtherExports[] = {"main", "SonkelVersion", "SokVersion"};

using MainFunction = int (*)(int, char**);
using VersionFunction = unsigned int (*)(unsigned int);
using InitFunction = int (*)(void*, unsigned int*);
using EnumerateFunction = unsigned short (*)(void*, int, EMENUCOMMAND*);
using InvokeFunction = int (*)(void*, int, EREGION*);
using TerminateFunction = void (*)();
using MenuStatusFunction = int (*)();

// An extension that never says "no such command" is not asked for more.
inline constexpr int kMostCommands = 1000;

}  // namespace sok
