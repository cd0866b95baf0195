/// @file
/// The form in which the host stores smart-shape records.
#pragma once

/// The tag of shape records (key view `other`: shape number, 0) and their size in bytes. 0x4F085378 and 92 from load
/// on.
///@{
extern unsigned int ot_smartshape;
extern int sizeofsmartshape;
///@}

/// Switches both, for good, to the form of hosts of the years 2000 to 2003: 0x4F075378 and 84 bytes. Calls no host.
void TurnOnEDTSmartShapeCompatibilityForSonkel2000_2003();
