/// @file
/// Points and regions of the music: from a staff list to the global staff list, and what lies inside.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

/// Turns a point's slot into that of the same instrument in the global staff list (SX_SlotToInst, SX_InstToSlot). A
/// point of the global list is left alone and counts as translated. Otherwise the new slot and staff list 0 are stored
/// whatever came of it, and the result is whether there is such a slot (above 0).
bool TranslateMusicPointToGlobalStaffList(EMUSICPOINT& point);

/// Translates the start and then the end; when the start fails, the end is not touched.
bool TranslateRegionToGlobalStaffList(EREGION& region);

/// Whether a point lies in a region, start and end included; slots and staff lists do not matter. Unless `staff` is 0,
/// an instrument number, the position is first taken from that staff's measure length to the score's: times
/// SafeGetMeasureDuration(0, measure), divided by SafeGetMeasureDuration(staff, measure). The product wraps at 32 bits,
/// the division truncates. A position below 0 counts as 0.
bool InRegion(int measure, int position, EREGION region, int staff);

/// Whether staff list, slot, measure and position are the same.
bool MusicPointsEqual(EMUSICPOINT a, EMUSICPOINT b);
