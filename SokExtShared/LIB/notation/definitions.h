/// @file
/// Shared definitions by contents: the number of the first one that has them, or of a new one.
///
/// The search goes up from number 1; a definition that does not load counts as a mismatch. Definitions beyond the
/// range of the search are never found. A creation that the host refuses shows in the number alone: 65535 or whatever
/// the host left, unless stated. The host calls are record loads and, for a new definition, creates.
#pragma once

#include "SokExtShared/LIB/notation/definition_records.h"

/// The host's number of a font (SX_FontNameToNum_UTF16); -1 when the host lacks the call.
int FontNameToNum(const unsigned short* fontName);

/// Text repeats 1 to 99, by text, font and the three further values, of which `b` and `c` are unsigned 16-bit. Of a
/// text the first 49 units count and are stored. A new one is two records, first the definition and then the text, each
/// created whatever came of the other: a refused definition leaves a text without one behind, a refused text a
/// definition that no search finds.
///@{
int FindOrCreateTextRepeat(const unsigned short* text, int font, int a, int b, int c);
int FindOrCreateTextRepeat(const unsigned short* text, const unsigned short* fontName, int a, int b, int c);
///@}

/// Staff lists 1 to 1000: those that stand for the top staff alone, whatever their name. A new one gets `name`. 0 when
/// the host refuses one of its two instrument lists; the first one stays behind when the second is refused. A refused
/// name does not show.
int FindOrCreateOnTopStaffList(const unsigned short* name);

/// Articulation definitions 1 to 1000, by their first 50 bytes.
int FindOrCreateArticulation(EDTArticulationDefinition2012 definition);
