/// @file
/// One wrapper for every entry point of the host, under the host's own names.
///
/// The rows stand in host_entry_points.def: name, parameters, result, and the answer when the host lacks the entry
/// point. A wrapper finds its entry point by name in the engine bundle at its first call and remembers the address,
/// or that there is none, for the life of the process: a wrapper first called before the engine bundle is known keeps
/// its fallback for good. First calls are safe from any thread.
///
/// Results are the host's own. 16-bit results are signed, but for the percussion maps' numbers
/// (SX_CreatePercMapRefData). 0 is failure, except where 0 is a number like any other: fonts, parts, the playback
/// system and processed MIDI data have -1 for "none" or failure, and a host without the call looks the same. Texts
/// without a suffix are zero-terminated 8-bit text in the host's encoding, except paths, which are UTF-8; `_UTF16`
/// stands for zero-terminated UTF-16, `_UTF32` for code points. Buffers and records are the caller's; handles and
/// pointers in results stay the host's. `version` is the interface version, kInterfaceVersion.
///
/// "(assumed)" marks functions whose parameters are known only by what this kit passes on: compare them with the
/// program's own interface before you call one. "Record of the host" marks those that take a record whose layout is not
/// in this kit.
#pragma once

#include "SokExtShared/SokEDK/Source/frame_records.h"
#include "SokExtShared/SokEDK/Source/host_types.h"

/// Handles the items of a dialog; the host calls it with the dialog, the item and the caller's data.
typedef short (*SF_DialogHandlerProc)(void* dialog, short item, void* data);

extern "C" {

/// @cond
#define SX_ENTRY(result, name, parameters, arguments, fallback) result name parameters;
#define SX_CUSTOM(result, name, parameters, arguments) result name parameters;
/// @endcond
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"

}  // extern "C"
