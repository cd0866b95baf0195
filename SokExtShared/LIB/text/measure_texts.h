/// @file
/// Measure texts: texts attached to a measure of a staff. Their characters and formatting are a text block.
///
/// The two numbers of their key name the measure and the staff, in the host's order. Several texts at one place are
/// told apart by `subIndex`, which is not kept in TMeasureUText.
#pragma once

#include "SokExtShared/LIB/text/text_blocks.h"

/// A measure text with its text, held by the caller.
struct TMeasureUText {
  EDTMeasureText record;
  EDTTextBlock2004 block;
  unsigned short text[1024];  ///< with caret commands, zero-terminated
  int cmper;
  int secondCmper;
};

/// Loads a measure text. Its characters come from the raw text of the ordinary kind, whatever the block says, and are
/// empty when that does not load; `urawtxt` receives the block's own text. False when the record did not load.
bool sx_loadmeasuretext(int cmper, int secondCmper, TMeasureUText& mt, int subIndex);

/// Creates text, block and record, each whatever came of the one before; what was created stays behind when another is
/// refused. The host chooses the record's subIndex, which is not kept. Returns whether the record was created.
bool sx_createmeasuretext(TMeasureUText& mt);

/// Creates `mt` unless a text at its place already has the same characters, whatever their formatting; true then, too.
bool sx_createuniquemeasuretext(TMeasureUText& mt);
