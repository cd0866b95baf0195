// Data records that an extension changed beside the music. They are told of, not written back.
#pragma once

#include <string>
#include <vector>

#include "host/engine/document.h"
#include "host/musicxml/score.h"

namespace sok {

// All records of one kind.
struct RecordChanges {
  std::string kind;  // "texts", "preferences" …, or the records' tag where no name is known
  long changed = 0;
  long added = 0;
  long removed = 0;
};

// What became of the records since `before`, by kind; articulations that were written with the music are left out.
std::vector<RecordChanges> FindRecordChanges(const Document& before, const Score& score,
                                             const std::vector<Change>& music);

// What is left hanging on entries that are gone: "lines are left without their entry in measures 2-3 (2 records)".
std::vector<std::string> FindOrphans(const Document& before, const Score& score);

// "the extension changed texts (2 records changed, 1 record added); only music is written back".
std::string RecordChangesText(const RecordChanges& changes);

}  // namespace sok
