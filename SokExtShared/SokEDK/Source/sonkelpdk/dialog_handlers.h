/// @file
/// Dialog handler procedures. On this platform a procedure is handed to the host as it is; both functions ask the host
/// with SX_IsMachO whether it agrees, and show "Should not get here!" through SX_AlertMessage when it does not.
#pragma once

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

/// Returns the procedure itself, whatever the host answers.
SF_DialogHandlerProc NewSF_DialogHandlerProc(SF_DialogHandlerProc procedure);

/// Does nothing with the procedure.
void DisposeSF_DialogHandlerProc(SF_DialogHandlerProc procedure);
