#include "SokExtShared/LIB/notation/last_item.h"

#include <algorithm>

#include "SokExtShared/LIB/records/record_calls.h"

int FindLastItem(unsigned int tag, int size, short step, void* buffer, int first) {
  const int capacity = size;
  const auto load = [&](const EDataID& id) {
    const bool loaded = SX_LoadEData(tag, &id, buffer, &size, kInterfaceVersion) != 0;
    size = std::min(size, capacity);  // a record may be larger than the buffer
    return loaded;
  };

  EDataID id = record_calls::OtherKey(first, 0);
  if (!load(id)) return 0;
  unsigned short last = id.other.cmper;
  for (;;) {
    const auto probe = static_cast<unsigned short>(last + static_cast<unsigned short>(step));
    if (probe <= last) break;  // past the last number, or no step at all
    id = record_calls::OtherKey(probe, 0);
    if (!load(id) && !record_calls::Next(tag, id, buffer, size)) break;
    last = id.other.cmper;
  }
  id.other.cmper = last;
  while (record_calls::Next(tag, id, buffer, size)) last = id.other.cmper;
  return static_cast<short>(last);
}
