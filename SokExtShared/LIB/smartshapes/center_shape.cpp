#include "SokExtShared/LIB/smartshapes/center_shape.h"

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using record_calls::DetailKey;
using record_tags::kCenterShape;

bool EDTCenterShape::Load(unsigned short shape, unsigned short center) {
  return record_calls::Load(kCenterShape, DetailKey(shape, center, 0), *this);
}

bool EDTCenterShape::Save(unsigned short shape, unsigned short center) const {
  return record_calls::Save(kCenterShape, DetailKey(shape, center, 0), *this);
}

bool EDTCenterShape::CreateShapeOnly(unsigned short shape, unsigned short& center) const {
  EDataID id = DetailKey(shape, center, 0);
  const bool created = record_calls::Create(kCenterShape, id, this, sizeof *this);
  center = id.detail.secondCmper;
  return created;
}

bool EDTCenterShape::EraseShapeOnly(unsigned short shape, unsigned short center) {
  return record_calls::Delete(kCenterShape, DetailKey(shape, center, 0));
}

bool EDTCenterShape::FullCreate(unsigned short measure, unsigned short shape, unsigned short& center) const {
  CreateShapeOnly(shape, center);
  short subIndex = -1;
  return EDTSmartShapeMeasMark{.shape = shape, .centerShape = center, .host4 = {}}.Create(measure, subIndex);
}
