/// @file
/// Host edits and mass edits, counted, so that an extension can close every edit that it still holds open and an end
/// without a start never reaches the host.
///
/// The wrappers themselves are rows of host_entry_points.def. Each changes its counter before anything else, so a
/// start counts also when the host lacks or refuses it: SX_StartSonkelEdit and SX_StartSonkelEdit_UTF16 add 1 and
/// return the host's result (0 without it). SX_EndSonkelEdit returns 1 and SX_CancelSonkelEdit does nothing when no
/// edit is open, without asking the host; otherwise they subtract 1 and call it. Not thread-safe.
#pragma once

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

/// Edits opened and neither ended nor cancelled yet.
extern int SonkelEditDepth;

/// SX_StartMassEdit calls minus SX_EndMassEdit calls; may be negative. Nothing tests it.
extern int MassEditDepth;

/// Ends every open edit, one SX_EndSonkelEdit each; afterwards SonkelEditDepth is 0 whatever the host answered.
extern "C" void SX_EndAllSonkelEdit();
