// A whole extension: one command, which tells how many notes the selection holds.
#include "SokExtShared/SokEDK.h"

namespace {

short CountNotes(const EREGION& region, short layers) {
  int notes = 0;
  for (const edk::Frame& frame : edk::Frames(region, layers)) {  // each layer of each selected staff and measure
    for (const edk::Entry& entry : frame.Entries()) {            // notes, chords and rests
      if (entry.IsNote()) notes += entry.Notes().size();
    }
  }
  edk::Alert(edk::Formatted("Notes: %d", notes));
  return 0;  // nothing was changed
}

constexpr ExtensionCommand kCommands[] = {{20000, CountNotes}};  // its texts: 20000 to 20002

}  // namespace

SOK_EXTENSION(kCommands, 20003);  // without a selection the host shows text 20003
