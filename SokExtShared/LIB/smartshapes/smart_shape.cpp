#include "SokExtShared/LIB/smartshapes/smart_shape.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <set>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/smartshapes/center_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_form.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"

using record_calls::OtherKey;

namespace {

constexpr unsigned int kPluginWordOrder = 0x0B000000;  // the first host version that shares the plug-in's word order

// A value of 0 and above changes the places of its halves. A negative one does not: its quotient is rounded toward
// zero, and the sum wraps at 32 bits, so -1 becomes 0xFFFF0000.
int SwapSigned(int value) {
  return static_cast<int>((static_cast<unsigned int>(value) << 16) + static_cast<unsigned int>(value / 65536));
}

void CreateMeasureMark(short measure, unsigned short shape) {
  short subIndex = -1;
  EDTSmartShapeMeasMark{.shape = shape, .centerShape = 0, .host4 = {}}.Create(static_cast<unsigned short>(measure),
                                                                              subIndex);
}

void CreateEntryMark(int entry, unsigned short shape) {
  short subIndex = -1;
  EDTSmartShapeEntMark{.shape = shape, .host2 = {}}.Create(entry, subIndex);
}

// Moves a shape from its place in `source` to the same place in `target`; false when there is no such place.
bool MoveToTarget(EDTSmartShape& shape, const EREGION& source, const EREGION& target) {
  const int slot = SX_InstToSlot(static_cast<short>(shape.startStaff), source.start.stafflist, kInterfaceVersion);
  if (slot < source.start.slot || slot > source.end.slot) return false;
  const int target_slot = slot - source.start.slot + target.start.slot;
  if (target_slot > target.end.slot) return false;

  const int offset = target.start.measure - source.start.measure;
  shape.startMeasure = static_cast<short>(shape.startMeasure + offset);
  shape.endMeasure = static_cast<short>(shape.endMeasure + offset);
  const short staff = SX_SlotToInst(static_cast<short>(target_slot), target.start.stafflist, kInterfaceVersion);
  if (staff <= 0) return false;
  shape.startStaff = shape.endStaff = static_cast<unsigned short>(staff);
  return true;
}

}  // namespace

void EDTSmartShapeNative::SwapWords() {
  if (SokVersion >= kPluginWordOrder) return;
  startEntry = SwapSigned(startEntry);
  endEntry = SwapSigned(endEntry);
  flags = std::rotl(flags, 16);
}

bool EDTSmartShape::Load(unsigned short number) {
  const bool loaded = record_calls::Load(ot_smartshape, OtherKey(number, 0), this, sizeofsmartshape);
  SwapWords();
  return loaded;
}

bool EDTSmartShape::Next(unsigned short& number) {
  EDataID id = OtherKey(number, 0);
  const bool found = record_calls::Next(ot_smartshape, id, this, sizeofsmartshape);
  number = id.other.cmper;
  SwapWords();
  return found;
}

bool EDTSmartShape::SaveShapeOnly(unsigned short number) {
  SwapWords();
  const bool saved = record_calls::Save(ot_smartshape, OtherKey(number, 0), this, sizeofsmartshape);
  SwapWords();
  return saved;
}

bool EDTSmartShape::CreateShapeOnly(unsigned short& number) {
  number = EDataID::kHostChooses;  // first of all, since it may be a field of this object
  SwapWords();
  EDataID id = OtherKey(EDataID::kHostChooses, 0);
  const bool created = record_calls::Create(ot_smartshape, id, this, sizeofsmartshape);
  number = id.other.cmper;
  SwapWords();
  return created;
}

bool EDTSmartShape::FullSave(unsigned short number) {
  const bool saved = SaveShapeOnly(number);
  CreateCenterShapesAndMarkers(number);
  return saved;
}

bool EDTSmartShape::FullCreate(unsigned short& number) {
  const bool created = CreateShapeOnly(number);
  CreateCenterShapesAndMarkers(number);
  return created;
}

bool EDTSmartShape::EraseShapeOnly(unsigned short number) {
  return record_calls::Delete(ot_smartshape, OtherKey(number, 0));
}

bool EDTSmartShape::FullErase(unsigned short number) const {
  const bool erased = EraseShapeOnly(number);
  EraseCenterShapesAndMarkers(number);
  return erased;
}

void EDTSmartShape::CreateCenterShapesAndMarkers(unsigned short number) const {
  for (int m = startMeasure; m <= endMeasure; ++m) {
    if (m == startMeasure || m == endMeasure) {
      CreateMeasureMark(static_cast<short>(m), number);
    } else {
      unsigned short center = EDataID::kHostChooses;
      EDTCenterShape{}.FullCreate(static_cast<unsigned short>(m), number, center);
    }
  }
  if ((flags & kSmartShapeOnEntries) != 0) {
    CreateEntryMark(startEntry, number);
    CreateEntryMark(endEntry, number);
  }
}

void EDTSmartShape::EraseCenterShapesAndMarkers(unsigned short number) const {
  for (int m = startMeasure; m <= endMeasure; ++m) {
    EDTSmartShapeMeasMark::FindAndEraseWithCenterShapes(static_cast<short>(m), number);
  }
  if ((flags & kSmartShapeOnEntries) != 0) {
    EDTSmartShapeEntMark::FindAndErase(startEntry, number);
    EDTSmartShapeEntMark::FindAndErase(endEntry, number);
  }
}

void EDTSmartShape::CopyMeasureShapes(EREGION source, EREGION target, short, short) {
  const int span = std::min(source.end.measure - source.start.measure, target.end.measure - target.start.measure);
  std::set<unsigned short> done;  // shapes that were copied, and their copies
  for (int m = source.start.measure; m <= source.start.measure + span; ++m) {
    EDTSmartShapeMeasMark mark{};
    for (int i = 0; i <= std::numeric_limits<short>::max(); ++i) {
      if (!mark.Load(static_cast<short>(m), static_cast<short>(i))) break;
      if (done.contains(mark.shape)) continue;
      EDTSmartShape shape{};
      shape.Load(mark.shape);
      if ((shape.flags & kSmartShapeOnEntries) != 0 || !MoveToTarget(shape, source, target)) continue;
      done.insert(mark.shape);
      unsigned short copy;
      shape.FullCreate(copy);
      done.insert(copy);
    }
  }
}
