// The command table of MeasureRests.
#include "SokExtShared/SokEDK/Source/extension/extension.h"
#include "entry/measure_rests.h"

namespace {

constexpr ExtensionCommand kCommands[] = {
    {20000, ClearMeasureRests},
    {20003, FillEmptyMeasures},
};

}  // namespace

const Extension kExtension = {kCommands, 2, 20006};
