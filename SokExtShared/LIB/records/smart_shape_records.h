/// @file
/// Smart-shape records by number, as the typed helpers do it: tag and size are those of the host's form of shapes
/// (ot_smartshape, sizeofsmartshape), read at every call.
///
/// Nothing is converted: on hosts before version 0x0B000000 (SokVersion) the shape holds the host's word order, where
/// the functions of EDTSmartShape keep the plug-in's. A shape loaded by one kind and saved by the other loses its flags
/// and entry numbers there; EDTSmartShapeNative::SwapWords turns one order into the other.
#pragma once

#include "SokExtShared/LIB/smartshapes/smart_shape.h"

/// Shapes by number.
///@{
bool sx_loadsmartshape(int cmper, EDTSmartShape& shape);
bool sx_savesmartshape(int cmper, EDTSmartShape shape);
///@}

/// 0xFFFF for a new number, which comes back in `cmper`.
bool sx_createsmartshape(int& cmper, EDTSmartShape shape);

/// Steps to the shape that follows `cmper`; its number comes back.
bool sx_nextsmartshape(int& cmper, EDTSmartShape& shape);
