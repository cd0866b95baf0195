// Extensions with one fault each, chosen by FAULT_…: the kit's entry points with one of them replaced, or a command
// that treats its host badly. Everything else about them is sound.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "SokExtShared/SokEDK.h"

#if defined(FAULT_MISSING_ALIAS)
#define Ext_invoke KeptInvoke
#elif defined(FAULT_VERSION)
#define Ext_getversion KeptVersion
#elif defined(FAULT_START)
#define SonkelExtensionInit KeptInit
#elif defined(FAULT_TEXT) || defined(FAULT_UNKNOWN)
#define Ext_enumerate_UTF16 KeptEnumerate
#elif defined(FAULT_SILENT)
#define SonkelExtensionInvoke KeptInvoke
#endif

namespace {

#if defined(FAULT_SLOW_START)
__attribute__((constructor)) void Start() {
  for (;;) pause();
}
#endif

[[maybe_unused]] EXTGF2005a* FirstFrame(const EREGION& region) {
  return SX_LoadTGF(region.start.stafflist, region.start.slot, region.start.measure, 0, 1, kInterfaceVersion);
}

short Run([[maybe_unused]] const EREGION& region, short) {
#if defined(FAULT_KEPT_FRAME)
  FirstFrame(region);
#elif defined(FAULT_FREED_TWICE)
  EXTGF2005a* const frame = FirstFrame(region);
  SX_FreeTGF(frame, kInterfaceVersion);
  SX_FreeTGF(frame, kInterfaceVersion);
#elif defined(FAULT_OPEN_EDIT)
  SX_StartSonkelEdit("edit", kInterfaceVersion);
#elif defined(FAULT_CALL_VERSION)
  SX_GetMaxLayers(0x0E000000);
#elif defined(FAULT_HANG)  // as stubbornly as a process can, and noisily, and not alone
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, nullptr);
  std::puts("{}");
  fork();
  for (;;) raise(SIGSTOP);
#elif defined(FAULT_EXIT)
  _exit(0);
#elif defined(FAULT_MISSING)  // a host without SX_GetPartName_UTF16 answers null
  return SX_GetPartName_UTF16(0, kInterfaceVersion)[0] == 'x' ? 1 : 0;
#elif defined(FAULT_REFUSED)  // forgets the frame when the host refuses to save it
  EXTGF2005a* const frame = FirstFrame(region);
  if (frame == nullptr || SX_SaveTGF(frame, kInterfaceVersion) == 0) return 0;
  SX_FreeTGF(frame, kInterfaceVersion);
#elif defined(FAULT_RANDOM)   // relies on the measure's length in its own score
  if (SX_GetMeasureDuration(1, 1, kInterfaceVersion) > 4096) std::abort();
#endif
  return 0;
}

constexpr ExtensionCommand kCommands[] = {{20000, Run}};

}  // namespace

#if defined(FAULT_MISSING_TEXT)
SOK_EXTENSION(kCommands, 29999);
#else
SOK_EXTENSION(kCommands, 20003);
#endif
#undef Ext_invoke
#undef Ext_getversion
#undef SonkelExtensionInit
#undef Ext_enumerate_UTF16
#undef SonkelExtensionInvoke

extern "C" {
#if defined(FAULT_VERSION)
SOK_EXPORTED unsigned int Ext_getversion(unsigned int) { return kInterfaceVersion; }  // does not keep the host's
#elif defined(FAULT_START)
SOK_EXPORTED int SonkelExtensionInit(void*, unsigned int*) { return 1; }  // does not clear the word
#elif defined(FAULT_TEXT)
SOK_EXPORTED unsigned short Ext_enumerate_UTF16(void* unused, int index, EMENUCOMMAND* record) {
  const unsigned short answer = KeptEnumerate(unused, index, record);
  if (answer != 0) std::fill(std::begin(record->text[1]), std::end(record->text[1]), 'x');  // without an end
  return answer;
}
#elif defined(FAULT_UNKNOWN)
SOK_EXPORTED unsigned short Ext_enumerate_UTF16(void* unused, int index, EMENUCOMMAND* record) {
  *record = {};
  return KeptEnumerate(unused, index, record);
}
#elif defined(FAULT_SILENT)
SOK_EXPORTED int SonkelExtensionInvoke(void* host, int index, EREGION* region) {
  return region != nullptr ? KeptInvoke(host, index, region) : 0;
}
#endif
}
