// A command for editors: a rest that is alone in its layer and as long as its measure looks like a whole-measure rest,
// but has a value of its own. Programs count and lay it out like any other rest. It becomes a whole-measure rest.
#include "SokExtShared/SokEDK.h"

namespace {

bool LooksWhole(const edk::Frame& frame) {
  const edk::EntryViews entries = frame.Entries();
  if (entries.size() != 1 || !entries.front().IsRest() || entries.front().IsWholeMeasureRest()) return false;
  return entries.front().Duration() == SafeGetMeasureDuration(frame.Place().Instrument(), frame.Place().measure);
}

short MakeRestsReal(const EREGION& region, short layers) {
  edk::Edit edit(20001);
  bool changed = false;
  for (const edk::Frame& frame : edk::Frames(region, layers)) {
    if (!LooksWhole(frame)) continue;
    const edk::Entry rest = frame.Entries().front();
    rest.MakeWholeMeasureRest(rest.Notes().empty() ? 0 : rest.Notes().front().GetPitch().steps);
    changed = frame.Save() || changed;
  }
  return edit.Finish(changed);
}

constexpr ExtensionCommand kCommands[] = {{20000, MakeRestsReal}};  // its texts: 20000 to 20002

}  // namespace

SOK_EXTENSION(kCommands, 20003);  // without a selection the host shows text 20003
