/// @file
/// Chord suffixes: vectors of elements, stored as one record an element under the suffix's number.
#pragma once

#include <vector>

#include "SokExtShared/LIB/notation/definition_records.h"

/// Replaces `elements` by those of a suffix. False when it has none.
bool sx_loadchordsuffix(int number, std::vector<EDTChordSuffix2012>& elements);

/// Creates the elements of a suffix, then deletes at the place behind the last of them, again and again until the host
/// refuses: the host moves later elements down to it. A `number` of -1 stands for a new suffix and receives the number
/// that the host chose. Elements that the host refuses, because they exist or for another reason, go unreported. Always
/// true.
bool sx_savechordsuffix(int& number, std::vector<EDTChordSuffix2012>& elements);

/// The first of the suffixes 1 to 1000 that has the same elements, the word at byte 4 not counting, or a new one. The
/// empty vector gives the first number without elements. When the host refuses to create, whatever number it left.
int FindOrCreateChordSuffix(std::vector<EDTChordSuffix2012>& elements);
