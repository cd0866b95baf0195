#include "SokExtShared/SokEDK/Source/edk/frames.h"
#include "entry/measure_rests.h"

namespace {

bool IsWholeMeasureRest(const edk::Frame& frame) {
  const edk::EntryViews entries = frame.Entries();
  return entries.size() == 1 && entries.front().IsWholeMeasureRest();
}

}  // namespace

short ClearMeasureRests(const EREGION& region, short layers) {
  short changed = 0;
  for (const edk::Frame& frame : edk::Frames(region, layers)) {
    if (IsWholeMeasureRest(frame) && frame.SaveEmpty()) changed = 1;
  }
  return changed;
}
