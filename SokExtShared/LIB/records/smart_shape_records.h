// Smart-shape records by number, as the typed helpers do it: tag and size are those of the host's form of shapes
// (ot_smartshape, sizeofsmartshape), read at every call.
#pragma once

#include "SokExtShared/LIB/smartshapes/smart_shape.h"

// Shapes by number.
bool sx_loadsmartshape(int cmper, EDTSmartShape& shape);
bool sx_savesmartshape(int cmper, EDTSmartShape shape);

// 0xFFFF for a new number, which comes back in `cmper`.
bool sx_createsmartshape(int& cmper, EDTSmartShape shape);

// Steps to the shape that follows `cmper`; its number comes back.
bool sx_nextsmartshape(int& cmper, EDTSmartShape& shape);
