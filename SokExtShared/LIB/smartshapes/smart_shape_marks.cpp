#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"

#include <limits>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/smartshapes/center_shape.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using record_calls::EntryDetailKey;
using record_calls::OtherKey;
using record_tags::kSmartShapeEntryMark;
using record_tags::kSmartShapeMeasureMark;

namespace {

// Calls `erase` for every mark of `shape` under `owner`. A deleted mark's place is looked at again, since the next mark
// has moved there; a mark that stays, be it because the host refused, is stepped over.
template <typename Mark, typename Erase>
bool EraseMarksOf(unsigned short shape, auto owner, Erase erase) {
  Mark mark{};
  int subIndex = 0;
  while (subIndex <= std::numeric_limits<short>::max()) {
    const auto place = static_cast<short>(subIndex);
    if (!mark.Load(owner, place)) break;
    if (mark.shape != shape || !erase(mark, place)) ++subIndex;
  }
  return true;
}

}  // namespace

bool EDTSmartShapeMeasMark::Load(short measure, short subIndex) {
  return record_calls::Load(kSmartShapeMeasureMark, OtherKey(measure, subIndex), *this);
}

bool EDTSmartShapeMeasMark::Save(short measure, short subIndex) const {
  return record_calls::Save(kSmartShapeMeasureMark, OtherKey(measure, subIndex), *this);
}

bool EDTSmartShapeMeasMark::Create(unsigned short measure, short& subIndex) const {
  EDataID id = OtherKey(measure, subIndex);
  const bool created = record_calls::Create(kSmartShapeMeasureMark, id, this, sizeof *this);
  subIndex = id.other.subIndex;
  return created;
}

bool EDTSmartShapeMeasMark::Next(unsigned short measure, short& subIndex) {
  EDataID id = OtherKey(measure, subIndex);
  const bool found = record_calls::Next(kSmartShapeMeasureMark, id, this, sizeof *this);
  subIndex = id.other.subIndex;
  return found;
}

bool EDTSmartShapeMeasMark::EraseMarkOnly(short measure, short subIndex) {
  return record_calls::Delete(kSmartShapeMeasureMark, OtherKey(measure, subIndex));
}

bool EDTSmartShapeMeasMark::FindAndEraseMarkOnly(short measure, unsigned short shape) {
  return EraseMarksOf<EDTSmartShapeMeasMark>(shape, measure, [measure](const EDTSmartShapeMeasMark&, short subIndex) {
    return EraseMarkOnly(measure, subIndex);
  });
}

bool EDTSmartShapeMeasMark::FindAndEraseWithCenterShapes(short measure, unsigned short shape) {
  const auto erase = [measure, shape](const EDTSmartShapeMeasMark& mark, short subIndex) {
    if (mark.centerShape != 0) EDTCenterShape::EraseShapeOnly(shape, mark.centerShape);
    return EraseMarkOnly(measure, subIndex);
  };
  return EraseMarksOf<EDTSmartShapeMeasMark>(shape, measure, erase);
}

bool EDTSmartShapeEntMark::Load(int entry, short subIndex) {
  return record_calls::Load(kSmartShapeEntryMark, EntryDetailKey(entry, subIndex), *this);
}

bool EDTSmartShapeEntMark::Save(int entry, short subIndex) const {
  return record_calls::Save(kSmartShapeEntryMark, EntryDetailKey(entry, subIndex), *this);
}

bool EDTSmartShapeEntMark::Create(int entry, short& subIndex) const {
  EDataID id = EntryDetailKey(entry, subIndex);
  const bool created = record_calls::Create(kSmartShapeEntryMark, id, this, sizeof *this);
  subIndex = id.entryDetail.subIndex;
  return created;
}

bool EDTSmartShapeEntMark::Next(int& entry, short& subIndex) {
  EDataID id = EntryDetailKey(entry, subIndex);
  const bool found = record_calls::Next(kSmartShapeEntryMark, id, this, sizeof *this);
  entry = id.entryDetail.entryNum;
  subIndex = id.entryDetail.subIndex;
  return found;
}

bool EDTSmartShapeEntMark::Erase(int entry, short subIndex) {
  return record_calls::Delete(kSmartShapeEntryMark, EntryDetailKey(entry, subIndex));
}

bool EDTSmartShapeEntMark::FindAndErase(int entry, unsigned short shape) {
  return EraseMarksOf<EDTSmartShapeEntMark>(
      shape, entry, [entry](const EDTSmartShapeEntMark&, short subIndex) { return Erase(entry, subIndex); });
}
