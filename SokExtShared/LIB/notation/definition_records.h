/// @file
/// When two records that scores refer to by number count as equal. No host calls.
#pragma once

#include "SokExtShared/SokEDK/Source/record_formats.h"

/// All eight words; with `ignoreWord4` all but the one at byte 4.
bool ChordSuffixEqual(EDTChordSuffix2012 a, EDTChordSuffix2012 b, bool ignoreWord4);

/// The words at bytes 0, 2, 4 and 18.
bool ChordEquals(EDTChord2010 a, EDTChord2010 b);

/// The first four words.
bool InstDefEquals(EDTInstDefinition a, EDTInstDefinition b);

/// All of it.
bool GenericEquals(EDTGeneric a, EDTGeneric b);
