#include "SokExtShared/LIB/smartshapes/smart_shape_form.h"

unsigned int ot_smartshape = 0x4F085378;
int sizeofsmartshape = 92;

void TurnOnEDTSmartShapeCompatibilityForSonkel2000_2003() {
  ot_smartshape = 0x4F075378;
  sizeofsmartshape = 84;
}
