#include "SokExtShared/LIB/notation/regions.h"

#include <algorithm>

#include "SokExtShared/LIB/records/typed_records.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace {

constexpr unsigned short kGlobalStaffList = 0;

int Rescale(int position, int multiplier, int divisor) {
  const int product = static_cast<int>(static_cast<unsigned int>(position) * static_cast<unsigned int>(multiplier));
  return static_cast<int>(static_cast<long>(product) / divisor);
}

}  // namespace

bool TranslateMusicPointToGlobalStaffList(EMUSICPOINT& point) {
  if (point.stafflist == kGlobalStaffList) return true;
  const short inst = SX_SlotToInst(point.slot, point.stafflist, kInterfaceVersion);
  point.slot = SX_InstToSlot(inst, kGlobalStaffList, kInterfaceVersion);
  point.stafflist = kGlobalStaffList;
  return point.slot > 0;
}

bool TranslateRegionToGlobalStaffList(EREGION& region) {
  return TranslateMusicPointToGlobalStaffList(region.start) && TranslateMusicPointToGlobalStaffList(region.end);
}

bool InRegion(int measure, int position, EREGION region, int staff) {
  if (region.start.measure < measure && measure < region.end.measure) return true;
  if (measure < region.start.measure || measure > region.end.measure) return false;
  if (staff != 0) {
    const auto number = static_cast<short>(measure);
    const int of_score = SafeGetMeasureDuration(0, number);
    const int of_staff = SafeGetMeasureDuration(static_cast<short>(staff), number);
    position = Rescale(position, of_score, of_staff);
  }
  position = std::max(position, 0);
  if (measure == region.start.measure && position < region.start.position) return false;
  return measure != region.end.measure || position <= region.end.position;
}

bool MusicPointsEqual(EMUSICPOINT a, EMUSICPOINT b) {
  return a.stafflist == b.stafflist && a.measure == b.measure && a.slot == b.slot && a.position == b.position;
}
