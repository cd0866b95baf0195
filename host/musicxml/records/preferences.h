// The document preferences of a score: the per-field records behind every preference structure and array of the host,
// and a preference record for each layer.
//
// Every per-field record exists, 12 bytes, so that no load of a preference is refused. All are zero but the page format
// of the score and, the same, of its parts ('ot77'). Its fields are taken to be the following, with lengths in units of
// 1/288 inch, from the score's <defaults>; pages are A4 with margins of 15 mm where it tells nothing of them.
//
//   at  record  words  field                              at  record  words  field
//    0  ot14    0-1    page height                        10  ot16    0-3    margins of left-hand pages
//    4  ot15    2-3    page width                         18  ot02    0-3    margins of systems
//    8  ot39    2      size in percent, 100               26  ot17    0-3    margins of right-hand pages
//   38  ot13    5      1 when left- and right-hand pages differ
//
// Margins are top, left, bottom and right; the last two change places in 'ot17'. A system's top margin is its distance
// to the one above, its bottom margin 0.
//
// The records of layers ('pfLA', 4 bytes) are zero: a hidden layer that holds music does not count as empty.
#pragma once

#include "host/musicxml/records/reader_context.h"

namespace sok {

void AddPreferences(const ReaderContext& context);

}  // namespace sok
