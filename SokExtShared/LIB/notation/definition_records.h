/// @file
/// Records that scores refer to by number, and when two of them count as equal.
///
/// Host formats of 16-bit words, as far as this kit looks into them; what only the host understands is named for its
/// place. No host calls.
#pragma once

#include <cstddef>

/// Tag 0x4F044958 ('O', 4, 'IX'), key view `other`: number, 0.
struct EDTArticulationDefinition2012 {
  short words[25];           ///< what two definitions are compared by
  unsigned char host50[10];  ///< the host's
};

/// One element of a chord suffix. Tag 0x534F4956 ('SOIV'), key view `other`: number, place of the element from 0.
struct EDTChordSuffix2012 {
  short words[8];
};

/// A chord symbol.
struct EDTChord2010 {
  short words[3];
  unsigned char host6[12];  ///< the host's
  short word18;
};

/// Tag 0x534F4953 ('SOIS'), key view `other`: instrument number, 0.
struct EDTInstDefinition {
  short words[4];
  unsigned char host8[128];  ///< the host's
};

/// Any record of one 12-byte place.
struct EDTGeneric {
  short words[6];
};

static_assert(sizeof(EDTArticulationDefinition2012) == 60, "EDTArticulationDefinition2012 size");
static_assert(offsetof(EDTArticulationDefinition2012, host50) == 50, "EDTArticulationDefinition2012::host50");
static_assert(sizeof(EDTChordSuffix2012) == 16, "EDTChordSuffix2012 size");
static_assert(offsetof(EDTChord2010, word18) == 18 && sizeof(EDTChord2010) == 20, "EDTChord2010 layout");
static_assert(offsetof(EDTInstDefinition, host8) == 8 && sizeof(EDTInstDefinition) == 136, "EDTInstDefinition layout");
static_assert(sizeof(EDTGeneric) == 12, "EDTGeneric size");

/// All eight words; with `ignoreWord4` all but the one at byte 4.
bool ChordSuffixEqual(EDTChordSuffix2012 a, EDTChordSuffix2012 b, bool ignoreWord4);

/// The words at bytes 0, 2, 4 and 18.
bool ChordEquals(EDTChord2010 a, EDTChord2010 b);

/// The first four words.
bool InstDefEquals(EDTInstDefinition a, EDTInstDefinition b);

/// All of it.
bool GenericEquals(EDTGeneric a, EDTGeneric b);
