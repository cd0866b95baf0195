#include <algorithm>
#include <iterator>

#include "SokExtShared/SokEDK/Source/sonkelpdk/frame_access.h"
#include "entry/measure_rests.h"

namespace {

bool IsWholeMeasureRest(const EXTGF2005a& frame) {
  if (frame.count != 1 || frame.entries == nullptr) return false;
  const EXENTRY& entry = frame.entries[0];
  return entry.duration == kWholeRestDuration && (entry.flags & kEntryIsNote) == 0;
}

// Replaces a frame by one without entries; the key words tell the host which.
bool EmptyFrame(const EXTGF2005a& frame) {
  EXTGF2005a empty{};
  std::copy(std::begin(frame.key), std::end(frame.key), empty.key);
  return SX_SaveTGF(&empty, kInterfaceVersion) != 0;
}

}  // namespace

short ClearMeasureRests(const EREGION& region, short layers) {
  short changed = 0;
  // Wider than the 16-bit numbers, so that a selection that ends at the last of them ends.
  for (int measure = region.start.measure; measure <= region.end.measure; ++measure) {
    for (int slot = region.start.slot; slot <= region.end.slot; ++slot) {
      for (short layer = 0; layer < layers; ++layer) {
        EXTGF2005a* const frame = SX_LoadTGF(region.start.stafflist, static_cast<short>(slot),
                                             static_cast<short>(measure), layer, 1, kInterfaceVersion);
        if (frame == nullptr) continue;
        if (IsWholeMeasureRest(*frame) && EmptyFrame(*frame)) changed = 1;
        SX_FreeTGF(frame, kInterfaceVersion);
      }
    }
  }
  return changed;
}
