// The tuplets of a score as records, each on its first entry: frames tell written values alone.
#pragma once

#include <map>
#include <span>

#include "host/musicxml/records/reader_context.h"

namespace sok {

#pragma pack(push, 2)

// What the host's tuplet record holds here; its key: entry, 0. So many notes in the time of so many: 3 in the time
// of 2. It reaches over entries of one frame whose values, without those of grace notes, add up to `written`; each of
// them sounds its value * in_time_of / notes.
struct TupletRecord {
  short notes;
  short in_time_of;
  int written;  // in duration units
  unsigned char unused8[22];
};

#pragma pack(pop)

static_assert(sizeof(TupletRecord) == 30 && offsetof(TupletRecord, written) == 4, "TupletRecord layout");

// Adds the tuplets of a measure. Notes in a row with the same ratio are one, unless a <tuplet> begins or ends among
// them.
void AddTuplets(const ReaderContext& context, const OpenMeasure& measure);

// The entries of a frame that stand in tuplets, by number, with the record of theirs.
std::map<int, TupletRecord> TupletsIn(const Document& document, std::span<const EXENTRY> entries);

}  // namespace sok
