/// @file
/// Data records: a document's typed records, found by a tag and a key.
///
/// A tag is a four-character code, first character in the most significant byte ('ot21' is 0x6F743231). It decides
/// which view of EDataID the host reads. Buffers are the caller's; sizes count bytes. Every call returns the host's
/// signed 16-bit result, 0 for failure or when the host lacks the entry point.
///
/// The wrappers are rows of host_entry_points.def:
///   SX_LoadEData(tag, id, buffer, size)  `size` holds the buffer's size on entry and the record's on return; a null
///       buffer asks only for the size.
///   SX_SaveEData(tag, id, buffer, size)  callers with an interface version below 0x08000000 reach the host unchanged,
///       with preference tags too.
///   SX_CreateEData(tag, id, buffer, size)  0xFFFF in a key field lets the host choose; the key is written back.
///   SX_DeleteEData(tag, id)
///   SX_PreviousEData, SX_NextEData(tag, id, buffer, size)  step the key, write it back, load that record; 0: none.
///
/// Preferences. For the tags named here loads and saves go to the host's per-field records (12 bytes each, 'ot…'),
/// never under the tag itself; every other tag that begins with 'pf', such as 'pfLA', is passed on like any record.
///   Ten structures: 'pfDP', 'pfSI', 'pfMS', 'pfRP', 'pfPB', 'pfSS', 'pfPL', 'pfEX', 'pfPF' (instance 0) and 'pf05'. A
///       load writes the whole structure whatever `size` states, and answers 1 with the sum of its fields in `size`:
///       the structure's size, but for 'pfSS', which reports 96 and takes 108. A save states at least 2 bytes a field,
///       reads the whole structure as well, loads every record and saves those in which a word changes, also over a
///       record whose load the host refused: its other words become 0.
///   Arrays of records: 'pfGD', 'pfGG', 'pfGb', 'pfGd', 'pfGs', 'pfMM', 'pfND', 'pfNd', 'pfPF' (instance 1), 'pfSC',
///       'pfSN', 'pfSP', 'pfSl', 'pfTC', 'pfTI', 'pfTX', 'pfTp' and 'pfTs'. 0 when `size` states less than the array
///       takes, or the instance is out of the tag's range.
/// What the host answers for single per-field records does not show.
///
/// Fret instruments (EDTFretInstrument25_3). A load with a buffer states at least 252 bytes: a smaller size is a fault
/// of the caller and ends the process with an assertion. The record is zeroed first. When the host answers success it
/// is asked a second time for as many bytes as the caller stated, and that answer counts; when it answers failure, the
/// record counts as loaded if any byte is not zero.
#pragma once

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
