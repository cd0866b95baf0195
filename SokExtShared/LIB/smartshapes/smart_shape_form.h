/// @file
/// The form in which the host stores smart-shape records.
#pragma once

/// The tag of shape records and their size in bytes: kSmartShape (record_tags.h) and 92 from load on.
///@{
extern unsigned int ot_smartshape;
extern int sizeofsmartshape;
///@}

/// Switches both, for good, to the form of hosts of the years 2000 to 2003: kSmartShapeOf2003 and 84 bytes. Calls no
/// host.
void TurnOnEDTSmartShapeCompatibilityForSonkel2000_2003();
