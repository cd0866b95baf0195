#include "SokExtShared/LIB/smartshapes/smart_shape_form.h"

#include "SokExtShared/SokEDK/Source/record_tags.h"

unsigned int ot_smartshape = record_tags::kSmartShape;
int sizeofsmartshape = 92;

void TurnOnEDTSmartShapeCompatibilityForSonkel2000_2003() {
  ot_smartshape = record_tags::kSmartShapeOf2003;
  sizeofsmartshape = 84;
}
