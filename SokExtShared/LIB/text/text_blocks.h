/// @file
/// Text blocks: the host keeps the characters of a text in one record and its formatting in another.
///
/// Every read of a text block leaves its text in `urawtxt`, the kit's one shared buffer, and returns a pointer to it:
/// the text is valid until the next read, here or in the helpers for instrument names, page texts and measure texts.
/// Texts are zero-terminated UTF-16; what does not fit is cut by the host. Not thread-safe.
#pragma once

#include "SokExtShared/SokEDK/Source/record_formats.h"

/// The text that was read last.
extern unsigned short urawtxt[1000];

/// Loads raw text into `capacity` units of the caller's buffer (SX_LoadEData). What the host does not write stays as it
/// was; the terminator is the host's.
bool sx_getrawtext(short textID, unsigned short* buffer, int capacity, unsigned int tag, int subIndex);

/// Stores raw text with its terminator: over the record `textID` (SX_SaveEData), or as a new one when that is -1
/// (SX_CreateEData). `textID` receives the number that the host leaves in the key, also on failure.
bool sx_putrawtext(short& textID, const unsigned short* text, unsigned int tag);

/// Reads a text block and its raw text into `urawtxt` (two SX_LoadEData), which is empty when either fails, and removes
/// its caret commands (caret_commands.h) when asked to. `blockOut`, when not null, receives the block, all zero when it
/// did not load. Returns `urawtxt`.
unsigned short* sx_gettextblock2004_utf16(short blockID, bool stripCarets, EDTTextBlock2004* blockOut);

/// Stores raw text and block, each over its record or as a new one when `block.textID` or `blockID` is -1. Both receive
/// their numbers, also on failure; a `textTag` of 0 becomes the ordinary kind. Returns whether the block was stored,
/// which is tried even when the raw text was not: such a block stays behind without its text, under a `textID` that the
/// host left (mostly -1). When the block is refused, the new raw text `block.textID` stays behind.
bool sx_puttextblock2004(short& blockID, EDTTextBlock2004& block, const unsigned short* text);
