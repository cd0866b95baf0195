// An extension whose commands do what hosts should survive and report.
#include <cstdio>
#include <cstdlib>

#include "SokExtShared/SokEDK/Source/extension/extension.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/frame_access.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace {

short Crash(const EREGION& region, short) {
  std::puts("noise");
  if (region.end.measure == 2) std::abort();
  if (region.end.measure == 3) std::exit(0);
  return 0;  // so that other files of a batch go on
}

short LeakAndTalk(const EREGION& region, short) {
  SX_LoadTGF(0, region.start.slot, region.start.measure, 0, 1, kInterfaceVersion);
  SX_StartSonkelEdit("Half Done", kInterfaceVersion);
  SX_AlertMessage(nullptr, 0, 0, "a word\nfrom the extension\n", kInterfaceVersion);
  return 0;
}

// In the first measure, selected or not.
short AddRests(const EREGION& region, short) {
  EXTGF2005a* const frame = SX_LoadTGF(0, region.start.slot, 1, 0, 1, kInterfaceVersion);
  if (frame == nullptr) return 0;
  SX_InsertEXENTRY(frame, 0, 2, kInterfaceVersion);
  for (short i = 0; i < 2; ++i) {
    frame->entries[i].duration = 1024;
    frame->entries[i].flags = kEntryLegal;
  }
  SX_SaveTGF(frame, kInterfaceVersion);
  SX_FreeTGF(frame, kInterfaceVersion);
  return 1;
}

// Records: one that the score has, one that it has not, and one that goes.
short ChangeRecords(const EREGION&, short) {
  EDataID id{};
  id.other.cmper = 1;
  const short block[10] = {};
  SX_SaveEData(0x534F5458, &id, block, sizeof block, kInterfaceVersion);    // 'SOTX'
  SX_CreateEData(0x41424344, &id, block, sizeof block, kInterfaceVersion);  // 'ABCD'
  SX_DeleteEData(0x534F4953, &id, kInterfaceVersion);                       // 'SOIS'
  return 1;
}

constexpr ExtensionCommand kCommands[] = {
    {30000, Crash}, {30003, LeakAndTalk}, {30006, AddRests}, {30010, ChangeRecords}};

}  // namespace

SOK_EXTENSION(kCommands, 30009);
