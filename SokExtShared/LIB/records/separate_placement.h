/// @file
/// Separate placements: 'otDI' records, several under one number, told apart by their first two words.
#pragma once

#include "SokExtShared/SokEDK/Source/record_formats.h"

/// Looks through the records under `cmper`, from subIndex 0 on with SX_NextEData, for one whose first two words, as
/// signed 16-bit numbers, are `matchFirst` and `matchSecond`; values beyond 16 bits match nothing. Returns its
/// subIndex, with the record in `record`, or -1, with the record that was looked at last. Where the host refuses the
/// step, what `record` then holds is compared once more.
///
/// With `deleteMatches`, each record looked at whose second word is `matchSecond` has the record at subIndex 0 of
/// `cmper` deleted, whichever place it has itself; the search goes on from its own place.
int LoadSeparatePlacement(int cmper, EDTSeparatePlacement& record, int matchSecond, int matchFirst, bool deleteMatches);
