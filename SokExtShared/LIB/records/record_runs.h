/// @file
/// Texts and arrays under one number: as runs of 12-byte records, or as one record of any size.
///
/// A run is bytes in consecutive records, 12 in each, from the key's subIndex upwards; the last one is filled up with
/// zeros. Nothing else marks its end: it ends where the next subIndex (32767 at most) has no record. Host calls are
/// SX_LoadEData, SX_SaveEData and SX_DeleteEData with the interface version and the `other` view of the key.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

/// Stores `count` elements of `elementSize` bytes each as a run. The whole run that was there is deleted first, from
/// its last record down. Returns 1, or 0 when a save fails: what was saved before stays, and the old run is gone.
/// Refused with 0 before anything is deleted: a negative product of count and size, no data, and a run that would go
/// beyond subIndex 32767.
short OrvelOtArray_Save(unsigned int tag, const EDataID* id, short count, int elementSize, void* data);

/// Loads an 8-bit text from a run into a new buffer that the caller releases with free(). A missing run is an empty
/// text. The text ends before two zero bytes in a row, also across two records, before a zero byte at the run's end,
/// and where the run ends; a single zero byte before another byte belongs to it. False, and `text` null, when there is
/// no memory or a record is refused that was there a moment ago.
bool sx_loadotherstring(unsigned int tag, int cmper, int subIndex, char*& text);

/// Stores an 8-bit text as a run without its terminating zero. False for null, for a text of 32768 bytes or more
/// (nothing is deleted then), and when OrvelOtArray_Save fails.
bool sx_saveotherstring(unsigned int tag, int cmper, int subIndex, char* text);

/// Loads a UTF-16 text, one record with its zero unit, into a new buffer of the record's size that the caller releases
/// with delete[]. An odd last byte is dropped, and a record without a zero unit gets one. When the host does not know
/// the record's size: false, and `text` is untouched. When it refuses the load itself, or there is no memory: false,
/// and `text` is null.
bool sx_loadotherstring_UTF16(unsigned int tag, int cmper, int subIndex, unsigned short*& text);

/// Stores a UTF-16 text as one record, its zero unit included. False for null or when the save fails.
bool sx_saveotherstring_UTF16(unsigned int tag, int cmper, int subIndex, unsigned short* text);
