/// @file
/// The names of instruments: text blocks that the instrument's record names.
#pragma once

/// The full or abbreviated name of an instrument without caret commands; the other name where that comes out empty.
/// The result is `urawtxt` (text_blocks.h), empty when there is no such instrument. Loads the instrument's record
/// (EDTInstDefinition), then one or two text blocks.
///@{
unsigned short* sx_getinstname_utf16(short inst);
unsigned short* sx_getabbrevinstname_utf16(short inst);
///@}
