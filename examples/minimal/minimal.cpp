// A whole extension: one command, which tells how many notes the selection holds.
#include <string>

#include "SokExtShared/SokEDK.h"

namespace {

int NotesOf(const EXTGF2005a& frame) {
  int notes = 0;
  for (int i = 0; i < frame.count; ++i) {
    if ((frame.entries[i].flags & kEntryIsNote) != 0) notes += frame.entries[i].noteCount;
  }
  return notes;
}

short CountNotes(const EREGION& region, short layers) {
  int notes = 0;
  for (int measure = region.start.measure; measure <= region.end.measure; ++measure) {
    for (int slot = region.start.slot; slot <= region.end.slot; ++slot) {
      for (short layer = 0; layer < layers; ++layer) {
        EXTGF2005a* const frame = SX_LoadTGF(region.start.stafflist, static_cast<short>(slot),
                                             static_cast<short>(measure), layer, 1, kInterfaceVersion);
        if (frame == nullptr) continue;
        notes += NotesOf(*frame);
        SX_FreeTGF(frame, kInterfaceVersion);
      }
    }
  }
  SX_AlertMessage(nullptr, 0, 0, ("Notes: " + std::to_string(notes)).c_str(), kInterfaceVersion);
  return 0;  // nothing was changed
}

constexpr ExtensionCommand kCommands[] = {{20000, CountNotes}};  // its texts: 20000 to 20002

}  // namespace

SOK_EXTENSION(kCommands, 20003);  // without a selection the host shows text 20003
