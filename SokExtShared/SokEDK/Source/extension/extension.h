// What an extension is to the host: six entry points over a table of commands.
//
// entry_points.cpp beside this file holds the entry points; it is compiled into every extension bundle
// (sok_add_extension does that). The extension defines `kExtension` and the commands in it.
//
// The texts of a command are three consecutive resource numbers of the bundle's Localizable.strings, each cut to 127
// units: the menu item, the name of the change for the undo menu, a description.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

// One menu command.
struct ExtensionCommand {
  int firstText;  // resource number of the first of its three texts
  // Carries the command out on a selection. `layers` is the host's layer count. Returns 1 when anything was changed.
  short (*run)(const EREGION& region, short layers);
};

// The commands of an extension, in the order of their numbers: at least one.
struct Extension {
  const ExtensionCommand* commands;
  int count;
  int noSelectionText;  // resource number of the alert shown when nothing is selected
};

// Defined by the extension.
extern const Extension kExtension;

// What the host calls, by these names or by the Ext_ ones.
extern "C" {

// Keeps the host's version in SokVersion; returns the interface version.
unsigned int SonkelExtensionVersion(unsigned int hostVersion);
unsigned int Ext_getversion(unsigned int hostVersion);

// Sets the word to 0; returns 1.
int SonkelExtensionInit(void* unused, unsigned int* word);
int Ext_init(void* unused, unsigned int* word);

// Fills the record of the command that the index's low 16 bits name and returns 1. Returns 0, leaving the record alone,
// for an index beyond the last command or low bits that name none.
unsigned short SonkelExtensionEnumerate_UTF16(void* unused, int index, EMENUCOMMAND* record);
unsigned short Ext_enumerate_UTF16(void* unused, int index, EMENUCOMMAND* record);

// Carries out the command that the index's low 16 bits name, the last one when they name none; returns its result.
// Returns 0 for an index beyond the last command, and, after an alert, without a selection.
int SonkelExtensionInvoke(void* host, int index, EREGION* region);
int Ext_invoke(void* host, int index, EREGION* region);

// Does nothing.
void SonkelExtensionTerminate();
void Ext_terminate();

// Always 1: every command is available.
int SonkelExtensionGetMenuStatus();
int Ext_getmenustatus();

// 2005, for hosts that read it; nothing changes it.
extern int SonkelVersion;

// `main` of the bundle has the extension find the host's engine bundle: returns 1 when it is known, 0 when it is not,
// when `count` is 0 or when `list` is null (then nothing is looked for).

}  // extern "C"
