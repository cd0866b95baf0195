/// @file
/// What is attached to an entry: notehead changes and articulations.
#pragma once

#include "SokExtShared/SokEDK/Source/frame_records.h"

/// Gives note record `index` (0 to 11) of an entry a notehead: changes the note's notehead record, found by the note's
/// identifier, or adds one. Sets kEntryHasNoteheads in the entry whatever the host says; returns the result of the
/// store.
bool ChangeNotehead(EXENTRY& entry, int index, int notehead);

/// Adds articulation `definition` with its two values (all 16 bits) to an entry. Sets kEntryHasArticulations in the
/// entry whatever the host says; returns whether the record was created.
bool AddArticulation(EXENTRY& entry, int definition, int first, int second);
