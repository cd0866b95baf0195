// Data records: a document's typed records, found by a tag and a key.
//
// A tag is a four-character code, first character in the most significant byte ('ot21' is 0x6F743231). It decides which
// view of EDataID the host reads. Buffers are the caller's; sizes count bytes. Every call returns the host's signed
// 16-bit result, 0 for failure or when the host lacks the entry point.
//
// The wrappers are rows of host_entry_points.def:
//   SX_LoadEData(tag, id, buffer, size)  `size` holds the buffer's size on entry and the record's on return; a null
//       buffer asks only for the size. Preference tags ('pf…') are assembled from per-field records and their own load
//       never reaches the host. A fret-instrument record is zeroed first and counts as loaded when the host left any
//       byte of it non-zero, whatever it answered; when it answered success it is asked again, and that answer counts.
//   SX_SaveEData(tag, id, buffer, size)  preference tags are split into per-field records, except for callers with an
//       interface version below 0x08000000, which reach the host unchanged.
//   SX_CreateEData(tag, id, buffer, size)  0xFFFF in a key field lets the host choose; the key is written back.
//   SX_DeleteEData(tag, id)
//   SX_PreviousEData, SX_NextEData(tag, id, buffer, size)  step the key, write it back, load that record; 0: none.
#pragma once

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

// A fret instrument's definition, which only the host understands.
struct EDTFretInstrument25_3 {
  unsigned char host[252];
};
static_assert(sizeof(EDTFretInstrument25_3) == 252, "EDTFretInstrument25_3 size");
