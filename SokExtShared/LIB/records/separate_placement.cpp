#include "SokExtShared/LIB/records/separate_placement.h"

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using namespace record_calls;
using record_tags::kSeparatePlacement;

int LoadSeparatePlacement(int cmper, EDTSeparatePlacement& record, int matchSecond, int matchFirst,
                          bool deleteMatches) {
  const EDataID first = OtherKey(cmper, 0);
  const auto matches = [&] { return record.second == matchSecond && record.first == matchFirst; };
  // A key of its own: the search keeps its place.
  const auto delete_first = [&] {
    if (deleteMatches && record.second == matchSecond) Delete(kSeparatePlacement, first);
  };

  EDataID id = first;
  if (Load(kSeparatePlacement, id, record)) {
    delete_first();
    if (matches()) return 0;
  }
  for (;;) {
    const bool stepped = Next(kSeparatePlacement, id, &record, sizeof record);
    const bool same_number = id.other.cmper == first.other.cmper;
    if (stepped && same_number) delete_first();
    if (same_number && matches()) return id.other.subIndex;
    if (!stepped || !same_number) return -1;
  }
}
