#include "SokExtShared/SokEDK/Source/sonkelpdk/dialog_handlers.h"

namespace {

void ExpectMachOHost() {
  if (SX_IsMachO(kInterfaceVersion) != 0) return;
  SX_AlertMessage(nullptr, 48, 0, "Should not get here!", kInterfaceVersion);
}

}  // namespace

SF_DialogHandlerProc NewSF_DialogHandlerProc(SF_DialogHandlerProc procedure) {
  ExpectMachOHost();
  return procedure;
}

void DisposeSF_DialogHandlerProc(SF_DialogHandlerProc) { ExpectMachOHost(); }
