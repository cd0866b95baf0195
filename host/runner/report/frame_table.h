// Frames in words: what inspect prints, what --frames says of a run and what a trace says of a save.
#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/score.h"
#include "host/runner/report/json.h"

namespace sok {

struct ShownEntry {
  EXENTRY entry{};
  std::string tuplet;  // that it stood in when the score was read: "3:2"; else empty
};

// A frame that changed, with its entries before the run and after it.
struct FrameChange {
  FramePlace place;
  std::vector<ShownEntry> before;
  std::vector<ShownEntry> after;
};

// By measure, staff and layer, as `changes` are.
std::vector<FrameChange> FindFrameChanges(const Document& before, const Document& after,
                                          const std::vector<Change>& changes);

// An entry in short: "C5:1024", "E4+Gb4:2048", "r:512". Pitches of more than three
// sharps or flats give their number: "C5(+7):1024".
std::string EntryText(const EXENTRY& entry);

// Entries in short, joined with blanks; "no entries" where there are none.
std::string EntriesText(std::span<const EXENTRY> entries);

// A table with a line for each entry of the score: place, number, the entry in short, what it is.
void PrintFrameTable(std::ostream& out, const Score& score);

// The same of changed frames: lines with - were there before, lines with + are there now, the others stayed. Empty when
// nothing changed.
std::string FrameTable(const std::vector<FrameChange>& changes);

// docs/sokrun-json.md has the fields.
Json FramesJson(const std::vector<FrameChange>& changes);

}  // namespace sok
