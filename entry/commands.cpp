// The command table of MeasureRests, and the entry points that the host calls.
#include "SokExtShared/SokEDK/Source/extension/extension.h"
#include "entry/measure_rests.h"

namespace {

constexpr ExtensionCommand kCommands[] = {
    {20000, ClearMeasureRests},
    {20003, FillEmptyMeasures},
};

}  // namespace

SOK_EXTENSION(kCommands, 20006);
