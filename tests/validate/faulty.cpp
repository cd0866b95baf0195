// An extension with one fault, the one that the environment variable FAULT names: an entry point that does the wrong
// thing, or a first command that treats its host badly. Everything else about it is sound.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "SokExtShared/SokEDK.h"

namespace {

bool Is(std::string_view fault) {
  const char* const name = std::getenv("FAULT");
  return name != nullptr && name == fault;
}

__attribute__((constructor)) void Start() {
  while (Is("SLOW_START")) pause();
}

EXTGF2005a* Load(const EREGION& region, int measures_on = 0) {
  const int measure = region.start.measure + measures_on;
  return SX_LoadTGF(region.start.stafflist, region.start.slot, static_cast<short>(measure), 0, 1, kInterfaceVersion);
}

void Free(EXTGF2005a* frame) { SX_FreeTGF(frame, kInterfaceVersion); }

// Changes the first frame, or another one; 1 when that was saved.
template <typename Edit>
short Change(const EREGION& region, Edit edit, int measures_on = 0) {
  EXTGF2005a* const frame = Load(region, measures_on);
  if (frame == nullptr) return 0;
  bool saved = false;
  if (frame->count > 0) {
    edit(*frame);
    saved = SX_SaveTGF(frame, kInterfaceVersion) != 0;
  }
  Free(frame);
  return saved ? 1 : 0;
}

void Shorten(EXTGF2005a& frame) { frame.entries[0].duration = 512; }

void StartEdit() { SX_StartSonkelEdit("edit", kInterfaceVersion); }
void EndEdit() { SX_EndSonkelEdit(kInterfaceVersion); }

[[noreturn]] void Hang() {  // as stubbornly as a process can, and noisily, and not alone
  sigset_t all;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, nullptr);
  std::puts("{}");
  fork();
  for (;;) raise(SIGSTOP);
}

struct Fault {
  std::string_view name;
  short (*run)(const EREGION& region);
};

const Fault kFaults[] = {
    {"KEPT_FRAME", [](const EREGION& r) -> short { return Load(r) != nullptr ? 0 : 0; }},
    {"FREED_TWICE",
     [](const EREGION& r) -> short {
       EXTGF2005a* const frame = Load(r);
       Free(frame), Free(frame);
       return 0;
     }},
    {"FREED_USED",
     [](const EREGION& r) -> short {
       EXTGF2005a* const frame = Load(r);
       Free(frame);
       return frame->count < 0 ? 1 : 0;
     }},
    {"OPEN_EDIT", [](const EREGION&) -> short { return StartEdit(), 0; }},
    {"OPAQUE_EDIT", [](const EREGION&) noexcept -> short { return StartEdit(), EndEdit(), 0; }},
    {"ENDED_TWICE", [](const EREGION&) -> short { return StartEdit(), EndEdit(), EndEdit(), 0; }},
    {"PARTLY_EDITED",
     [](const EREGION& r) -> short {
       StartEdit();
       const short saved = Change(r, Shorten);
       EndEdit();
       return Change(r, [](EXTGF2005a& frame) { frame.entries[0].duration = 256; }) != 0 ? short{1} : saved;
     }},
    {"EDITED_LATE", [](const EREGION& r) -> short { return StartEdit(), EndEdit(), Change(r, Shorten); }},
    {"CALL_VERSION", [](const EREGION&) -> short { return SX_GetMaxLayers(0x0E000000) < 0 ? 1 : 0; }},
    {"THREAD",
     [](const EREGION&) -> short {
       std::thread([] { SX_GetMaxLayers(kInterfaceVersion); }).join();
       return 0;
     }},
    {"OUTSIDE", [](const EREGION& r) -> short { return Change(r, Shorten, -1); }},
    {"OUTSIDE_AFTER", [](const EREGION& r) { return Change(r, Shorten, r.end.measure - r.start.measure + 1); }},
    {"ANSWER_0", [](const EREGION& r) -> short { return Change(r, Shorten) < 0 ? 1 : 0; }},
    {"ANSWER_1", [](const EREGION&) -> short { return 1; }},
    {"ANSWER_1_AT_END",
     [](const EREGION& r) -> short {
       Change(r, Shorten);
       return 1;
     }},
    {"ANSWER_5", [](const EREGION&) -> short { return 5; }},
    {"NOTES_13", [](const EREGION& r) { return Change(r, [](EXTGF2005a& f) { f.entries[0].noteCount = 13; }); }},
    {"VALUE_0", [](const EREGION& r) { return Change(r, [](EXTGF2005a& f) { f.entries[0].duration = 0; }); }},
    {"PITCH", [](const EREGION& r) { return Change(r, [](EXTGF2005a& f) { f.entries[0].notes[0].first = 42; }); }},
    {"NUMBER_0", [](const EREGION& r) { return Change(r, [](EXTGF2005a& f) { f.entries[0].number = 0; }); }},
    {"NUMBERS_ALIKE",
     [](const EREGION& r) {
       return Change(r, [](EXTGF2005a& f) { f.entries[f.count - 1].number = int{f.entries[0].number}; });
     }},
    {"INSTRUMENT",
     [](const EREGION&) -> short {
       EDataID id{};
       id.other = {1, 0};
       return SX_DeleteEData(FourCharacterTag("SOIS"), &id, kInterfaceVersion) != 0 ? 1 : 0;
     }},
    {"PART",
     [](const EREGION&) -> short {
       SX_SetCurrentPartID(1, kInterfaceVersion);
       return 0;
     }},
    {"ALERT_KEY",
     [](const EREGION&) -> short {
       char text[64];
       SX_AlertMessage(nullptr, 0, 0, PlugIn_GetStringResource(29999, text, sizeof text), kInterfaceVersion);
       return 0;
     }},
    {"ALERT_EMPTY", [](const EREGION&) -> short { return SX_AlertMessage(nullptr, 0, 0, "", kInterfaceVersion) < 0; }},
    {"EXCEPTION", [](const EREGION&) -> short { throw std::runtime_error("no luck"); }},
    {"OVERFLOW",
     [](const EREGION& r) -> short {
       auto* const numbers = static_cast<volatile char*>(std::malloc(8));
       numbers[r.start.slot + 7] = 1;
       std::free(const_cast<char*>(numbers));
       return 0;
     }},
    {"HANG", [](const EREGION&) -> short { Hang(); }},
    {"EXIT", [](const EREGION&) -> short { _exit(0); }},
    // A host without SX_GetPartName_UTF16 answers null.
    {"MISSING", [](const EREGION&) -> short { return SX_GetPartName_UTF16(0, kInterfaceVersion)[0] == 1 ? 1 : 0; }},
    // Forgets the frame when the host refuses to save it.
    {"REFUSED",
     [](const EREGION& r) -> short {
       EXTGF2005a* const frame = Load(r);
       if (frame == nullptr || SX_SaveTGF(frame, kInterfaceVersion) == 0) return 0;
       Free(frame);
       return 0;
     }},
    // Relies on the measure's length in its own score.
    {"RANDOM",
     [](const EREGION&) -> short {
       if (SX_GetMeasureDuration(1, 1, kInterfaceVersion) > 4096) std::abort();
       return 0;
     }},
};

short RunFault(const EREGION& region, short) {
  for (const Fault& fault : kFaults) {
    if (Is(fault.name)) return fault.run(region);
  }
  return 0;
}

short Alert(const EREGION&, short) { return SX_AlertMessage(nullptr, 0, 0, "Hello", kInterfaceVersion) < 0 ? 1 : 0; }

constexpr ExtensionCommand kCommands[] = {{20000, RunFault}, {20004, Alert}};

}  // namespace

// The entry points that a fault may replace are kept under names of their own.
#define SonkelExtensionInit KeptInit
#define SonkelExtensionInvoke KeptInvoke
#define Ext_enumerate_UTF16 KeptEnumerate
#define Ext_getmenustatus KeptStatus
#define Ext_getversion KeptVersion
#define Ext_invoke KeptAlias
SOK_EXTENSION(kCommands, Is("MISSING_TEXT") ? 29999 : 20003);
#undef SonkelExtensionInit
#undef SonkelExtensionInvoke
#undef Ext_enumerate_UTF16
#undef Ext_getmenustatus
#undef Ext_getversion
#undef Ext_invoke

extern "C" {

SOK_EXPORTED int SonkelExtensionInit(void* unused, unsigned int* word) {
  return Is("START") ? 1 : KeptInit(unused, word);  // does not clear the word
}

SOK_EXPORTED int SonkelExtensionInvoke(void* host, int index, EREGION* region) {
  return Is("SILENT") && region == nullptr ? 0 : KeptInvoke(host, index, region);
}

SOK_EXPORTED unsigned short Ext_enumerate_UTF16(void* unused, int index, EMENUCOMMAND* record) {
  if (Is("UNKNOWN")) *record = {};
  const unsigned short answer = KeptEnumerate(unused, Is("SWAPPED_TEXTS") && index < 2 ? 1 - index : index, record);
  if (Is("TEXT") && answer != 0) std::fill(std::begin(record->text[1]), std::end(record->text[1]), 'x');  // no end
  return answer;
}

SOK_EXPORTED int Ext_getmenustatus() {
  using Status = int (*)();
  static const Status status = Is("SWAPPED_STATUS") ? reinterpret_cast<Status>(SonkelExtensionTerminate) : KeptStatus;
  return status();
}

SOK_EXPORTED unsigned int Ext_getversion(unsigned int host) {
  return Is("VERSION") ? kInterfaceVersion : KeptVersion(host);  // does not keep the host's
}

SOK_EXPORTED int Ext_invoke(void* host, int index, EREGION* region) {
  return KeptAlias(host, Is("SWAPPED_COMMANDS") && index < 2 ? 1 - index : index, region);
}

}  // extern "C"
