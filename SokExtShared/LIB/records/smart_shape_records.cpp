#include "SokExtShared/LIB/records/smart_shape_records.h"

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_form.h"

bool sx_loadsmartshape(int cmper, EDTSmartShape& shape) {
  return sx_loadother(ot_smartshape, cmper, 0, &shape, sizeofsmartshape);
}

bool sx_savesmartshape(int cmper, EDTSmartShape shape) {
  return sx_saveother(ot_smartshape, cmper, 0, &shape, sizeofsmartshape);
}

bool sx_createsmartshape(int& cmper, EDTSmartShape shape) {
  int subIndex = -1;
  return sx_createother(ot_smartshape, cmper, subIndex, &shape, sizeofsmartshape);
}

bool sx_nextsmartshape(int& cmper, EDTSmartShape& shape) {
  int subIndex = 0;
  return sx_nextother(ot_smartshape, cmper, subIndex, &shape, sizeofsmartshape);
}
