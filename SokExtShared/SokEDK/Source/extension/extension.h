/// @file
/// What an extension is to the host: six entry points and `main` over a table of commands.
///
/// One source of an extension has the table and, at global scope, one line more, which defines everything that the host
/// looks for in the bundle:
///
///     constexpr ExtensionCommand kCommands[] = {{20000, ClearRests}, {20003, FillMeasures}};
///     SOK_EXTENSION(kCommands, 20006);
///
/// The texts of a command are three consecutive resource numbers of the bundle's Localizable.strings, each cut to 127
/// units: the menu item, the name of the change for the undo menu, a description.
#pragma once

#include <iterator>

#include "SokExtShared/SokEDK/Source/host_types.h"

/// One menu command.
struct ExtensionCommand {
  int firstText;  ///< resource number of the first of its three texts
  /// Carries the command out on a selection. `layers` is the host's layer count. Returns 1 when anything was changed.
  short (*run)(const EREGION& region, short layers);
};

/// The commands of an extension, in the order of their numbers: at least one.
struct Extension {
  const ExtensionCommand* commands;
  int count;
  int noSelectionText;  ///< resource number of the alert shown when nothing is selected
};

/// What the entry points do; SOK_EXTENSION calls them.
namespace entry_points {

/// Has the extension find the host's engine bundle. Returns 1 when it is known, 0 when it is not, when `count` is 0 or
/// when `list` is null (then nothing is looked for).
int Main(int count, char** list);

/// Keeps the host's version in SokVersion; returns the interface version.
unsigned int Version(unsigned int hostVersion);

/// Sets the word to 0; returns 1.
int Init(unsigned int* word);

/// Fills the record of the command that the index's low 16 bits name and returns 1. Returns 0, leaving the record
/// alone, for an index beyond the last command or low bits that name none.
unsigned short Enumerate(const Extension& extension, int index, EMENUCOMMAND* record);

/// Carries out the command that the index's low 16 bits name, the last one when they name none; returns its result.
/// Returns 0 for an index beyond the last command, and, after an alert, without a selection (a null region).
int Invoke(const Extension& extension, void* host, int index, EREGION* region);

}  // namespace entry_points

/// Leaves a name visible to the host in a bundle whose names are hidden.
#define SOK_EXPORTED __attribute__((visibility("default")))

/// Defines what the host looks for in a bundle: `main`, the six entry points by their names and by the Ext_ ones, and
/// SonkelVersion, 2005 for hosts that read it. `commands_` is an array of ExtensionCommand, `no_selection_text_` the
/// resource number of the alert shown when nothing is selected. Every command is always available, and there is nothing
/// to do at the end.
#define SOK_EXTENSION(commands_, no_selection_text_)                                                              \
  static const Extension sok_extension = {commands_, static_cast<int>(std::size(commands_)), no_selection_text_}; \
  SOK_EXPORTED int main(int count, char** list) { return entry_points::Main(count, list); }                       \
  extern "C" {                                                                                                    \
  SOK_EXPORTED int SonkelVersion = 2005;                                                                          \
  SOK_EXPORTED unsigned int SonkelExtensionVersion(unsigned int host) { return entry_points::Version(host); }     \
  SOK_EXPORTED int SonkelExtensionInit(void*, unsigned int* word) { return entry_points::Init(word); }            \
  SOK_EXPORTED unsigned short SonkelExtensionEnumerate_UTF16(void*, int index, EMENUCOMMAND* record) {            \
    return entry_points::Enumerate(sok_extension, index, record);                                                 \
  }                                                                                                               \
  SOK_EXPORTED int SonkelExtensionInvoke(void* host, int index, EREGION* region) {                                \
    return entry_points::Invoke(sok_extension, host, index, region);                                              \
  }                                                                                                               \
  SOK_EXPORTED void SonkelExtensionTerminate() {}                                                                 \
  SOK_EXPORTED int SonkelExtensionGetMenuStatus() { return 1; }                                                   \
  SOK_EXPORTED unsigned int Ext_getversion(unsigned int host) { return SonkelExtensionVersion(host); }            \
  SOK_EXPORTED int Ext_init(void* unused, unsigned int* word) { return SonkelExtensionInit(unused, word); }       \
  SOK_EXPORTED unsigned short Ext_enumerate_UTF16(void* unused, int index, EMENUCOMMAND* record) {                \
    return SonkelExtensionEnumerate_UTF16(unused, index, record);                                                 \
  }                                                                                                               \
  SOK_EXPORTED int Ext_invoke(void* host, int index, EREGION* region) {                                           \
    return SonkelExtensionInvoke(host, index, region);                                                            \
  }                                                                                                               \
  SOK_EXPORTED void Ext_terminate() { SonkelExtensionTerminate(); }                                               \
  SOK_EXPORTED int Ext_getmenustatus() { return SonkelExtensionGetMenuStatus(); }                                 \
  }                                                                                                               \
  static_assert(std::size(commands_) > 0, "an extension has at least one command")
