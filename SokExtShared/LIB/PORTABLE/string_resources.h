/// @file
/// The texts of a plug-in: its bundle's Localizable.strings, by number.
///
/// A resource number holds a group in its high 16 bits and an item in its low 16 bits, both signed. Its key in the
/// table is the item alone in decimal when the group is 0 ("20001"), else group and item ("20000,1"). A text that the
/// table lacks comes back as its key; when there is no table at all, the alert "Missing Localizable.strings" is shown
/// as well (SX_AlertMessage), at every such look-up. Capacities include the terminating zero. Not thread-safe.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The text of a resource number, a new string that the caller releases, or null. The plug-in's bundle is found at the
/// first call, from the place of the plug-in's own code, and kept. Outside of any bundle this ends in an assertion.
CFStringRef CopyPlugInStringResource(int number);

/// Fills `buffer` with the text and a zero unit, cut to `capacity` units; the buffer's last unit is always 0. Returns
/// the buffer; null, writing nothing, when there is no room at all.
unsigned short* PlugIn_GetStringResource(int number, unsigned short* buffer, short capacity);

/// The same in the application's 8-bit encoding, cut to `capacity` bytes; the rest of the buffer is zeroed. A text of
/// more than 255 bytes, or one that the encoding cannot express, gives the empty text.
char* PlugIn_GetStringResource(int number, char* buffer, short capacity);

/// Fetches an item of a group in the 8-bit form; returns its length in bytes. The item counts as unsigned here.
short LoadIndString(short group, short item, char* buffer, short capacity);

/// The text of an id: below 1000 it stands for 20000 plus the id; its thousands are the group, the rest is the item.
/// The result is a static buffer of 1024 bytes (1024 units), overwritten by the next call.
///@{
char* GetResourceCString(unsigned long id);
unsigned short* GetResourceCString_UTF16(unsigned long id);
///@}

/// Makes a Pascal string: a length byte, then the text, cut to 255 bytes. Bytes behind the text are left alone.
void c2p(unsigned char (&counted)[256], const char* text);

/// Menu strings need no rework on this platform: returns its argument.
char* MakeGoodMenuString(char* text);
