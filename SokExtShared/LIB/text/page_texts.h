/// @file
/// Page texts: titles, credits and other texts on a page. Their characters and formatting are a text block.
#pragma once

#include "SokExtShared/LIB/text/text_blocks.h"

/// A page text with its text, held by the caller.
struct TPageUText {
  EDTPageText record;
  EDTTextBlock2004 block;
  unsigned short text[1024];  ///< with caret commands, zero-terminated
  int number;                 ///< the cmper of its key
};

/// Loads the record `number`, `subIndex` with its text, which stays in `urawtxt` too. False when the record did not
/// load: all but `pt.record` is as it was then.
bool sx_loadpagetext(short number, TPageUText& pt, int subIndex);

/// Stores text, block and record (sx_puttextblock2004, then SX_SaveEData). Returns whether the record was saved.
bool sx_savepagetext(TPageUText& pt, int subIndex);

/// Creates text, block and record, each whatever came of the one before; what was created stays behind when another is
/// refused. The host chooses the record's subIndex under `pt.number`; that key is not kept. Returns whether the record
/// was created.
bool sx_createpagetext(TPageUText& pt);
