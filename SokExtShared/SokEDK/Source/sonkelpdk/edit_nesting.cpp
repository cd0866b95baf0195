#include "SokExtShared/SokEDK/Source/sonkelpdk/edit_nesting.h"

#include "SokExtShared/SokEDK/Source/sonkelpdk/binding.h"

int SonkelEditDepth = 0;
int MassEditDepth = 0;

int SX_StartSonkelEdit(const char* text, unsigned int version) {
  ++SonkelEditDepth;
  SX_BIND(SX_StartSonkelEdit);
  return fpProc != nullptr ? fpProc(text, version) : 0;
}

int SX_StartSonkelEdit_UTF16(const unsigned short* text, unsigned int version) {
  ++SonkelEditDepth;
  SX_BIND(SX_StartSonkelEdit_UTF16);
  return fpProc != nullptr ? fpProc(text, version) : 0;
}

short SX_EndSonkelEdit(unsigned int version) {
  if (SonkelEditDepth <= 0) return 1;
  --SonkelEditDepth;
  SX_BIND(SX_EndSonkelEdit);
  return fpProc != nullptr ? fpProc(version) : short{0};
}

void SX_CancelSonkelEdit(unsigned int version) {
  if (SonkelEditDepth <= 0) return;
  --SonkelEditDepth;
  SX_BIND(SX_CancelSonkelEdit);
  if (fpProc != nullptr) fpProc(version);
}

void SX_EndAllSonkelEdit() {
  while (SonkelEditDepth > 0) SX_EndSonkelEdit(kInterfaceVersion);
}

int SX_StartMassEdit(void* edit, int steps, unsigned int version) {
  ++MassEditDepth;
  SX_BIND(SX_StartMassEdit);
  return fpProc != nullptr ? fpProc(edit, steps, version) : 0;
}

void SX_EndMassEdit(void* edit, short keep, unsigned int version) {
  --MassEditDepth;
  SX_BIND(SX_EndMassEdit);
  if (fpProc != nullptr) fpProc(edit, keep, version);
}
