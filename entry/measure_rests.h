// The two commands of MeasureRests. Both work on whole measures: of the selection they read the start point's staff
// list and the slots and measures from start to end, both ends inside.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

// Empties every layer whose only entry is a rest of a whole measure. Returns 1 when at least one save succeeded.
short ClearMeasureRests(const EREGION& region, short layers);

// Puts one rest of a whole measure at the front of layer 0 wherever no layer of a staff holds music in a measure. A
// layer that holds music counts as empty when its preferences allow it and the host hides it. Returns 1 when at least
// one rest was inserted.
short FillEmptyMeasures(const EREGION& region, short layers);
