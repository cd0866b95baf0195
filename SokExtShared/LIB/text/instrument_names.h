/// @file
/// The names of instruments: text blocks that the instrument's record names.
#pragma once

#include <cstddef>

/// The host's instrument definition ('SOIS'; key view `other`: instrument, 0), of which only the names are read here.
struct EDTInstrumentNames {
  unsigned char host[30];     ///< the host's
  short fullName;             ///< number of a text block
  short abbreviatedName;      ///< number of a text block
  unsigned char host34[102];  ///< the host's
};
static_assert(sizeof(EDTInstrumentNames) == 136, "EDTInstrumentNames size");
static_assert(offsetof(EDTInstrumentNames, fullName) == 30, "EDTInstrumentNames::fullName");
static_assert(offsetof(EDTInstrumentNames, abbreviatedName) == 32, "EDTInstrumentNames::abbreviatedName");

/// The full or abbreviated name of an instrument without caret commands; the other name where that comes out empty.
/// The result is `urawtxt` (text_blocks.h), empty when there is no such instrument. Loads the instrument's record
/// ('SOIS'), then one or two text blocks.
///@{
unsigned short* sx_getinstname_utf16(short inst);
unsigned short* sx_getabbrevinstname_utf16(short inst);
///@}
