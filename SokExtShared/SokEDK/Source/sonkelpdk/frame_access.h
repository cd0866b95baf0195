/// @file
/// Frames: loading, changing, saving and freeing the entries of one layer of one staff in one measure.
///
/// The wrappers are rows of host_entry_points.def; what they add to the host's call:
///   SX_LoadTGF(stafflist, slot, measure, layer, option)  counts in LoadedTGFCounter first; the host's frame, to be
///       given back with SX_FreeTGF, or null when there is none. `option` is the host's affair; this project passes 1.
///   SX_FreeTGF(frame)  counts down first; the host's result, 0 without it.
///   SX_SaveTGF(frame), SX_InsertEXENTRY(frame, index, count), SX_DeleteEXENTRY(frame, index, count),
///   SX_ReduceEntries(frame)  tidy the frame first, also when the host lacks the entry point. 0 is failure; the frame
///       then keeps what the tidying did. Insertions and deletions may replace the entry array: read its pointer again.
///
/// Tidying gives every note an identifier that is unique in its entry and not 0 (the earlier of two equal ones gets the
/// new number), mirrors the identifier's low five bits into bits 16 to 20 of the note's flags, zeroes the unused note
/// slots and, while CanAddNoteRecordToRests is true, gives every rest one note record, whose identifier stays 0 until
/// the next tidying. Nothing here is thread-safe.
#pragma once

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

/// Whether tidying gives rests a note record. True from load on; nothing here changes it.
extern bool CanAddNoteRecordToRests;

/// Calls of SX_LoadTGF minus calls of SX_FreeTGF.
extern int LoadedTGFCounter;
