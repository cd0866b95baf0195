// One wrapper for every entry point of the host, under the host's own names.
//
// The rows stand in host_entry_points.def: name, parameters, result, and the answer when the host lacks the entry
// point. A wrapper finds its entry point by name in the engine bundle at its first call and remembers the address,
// or that there is none, for the life of the process: a wrapper first called before the engine bundle is known keeps
// its fallback for good. First calls are safe from any thread.
//
// Results are the host's own: 16-bit results are signed, and 0 is failure unless the row says otherwise. Texts without
// a suffix are zero-terminated 8-bit text in the host's encoding, `_UTF16` zero-terminated UTF-16, `_UTF32` code
// points. Buffers and records are the caller's; handles and pointers in results stay the host's.
#pragma once

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "SokExtShared/SokEDK/Source/host_types.h"

// Handles the items of a dialog; the host calls it with the dialog, the item and the caller's data.
typedef short (*SF_DialogHandlerProc)(void* dialog, short item, void* data);

extern "C" {

#define SX_ENTRY(result, name, parameters, arguments, fallback) result name parameters;
#define SX_CUSTOM(result, name, parameters) result name parameters;
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"

}  // extern "C"
