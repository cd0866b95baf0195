#include "SokExtShared/LIB/notation/instrument_lists.h"

#include <algorithm>
#include <iterator>

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace {

constexpr unsigned short kGlobalStaffList = 0;

bool HasSlot(short inst) { return SX_InstToSlot(inst, kGlobalStaffList, kInterfaceVersion) > 0; }

// The first place that holds `inst` (0: the first free one), or null.
short* PlaceOf(EDT_DC& dc, int inst) {
  short* const place = std::find(std::begin(dc.inst), std::end(dc.inst), inst);
  return place != std::end(dc.inst) ? place : nullptr;
}

struct Link {
  EDT_DC dc{};
  int subIndex = 0;
};

// Calls `visit` for the records of a list in order until it returns true; returns whether it did.
template <typename Visit>
bool AnyLink(unsigned int tag, int list, Visit visit) {
  Link link;
  bool loaded = sx_loadother(tag, list, 0, &link.dc, sizeof link.dc);
  for (;;) {
    if (loaded && visit(link)) return true;
    int owner = list;
    link.dc = {};
    loaded = sx_nextother(tag, owner, link.subIndex, &link.dc, sizeof link.dc);
    if (!loaded || owner != list) return false;
  }
}

}  // namespace

bool InstValid(int inst) { return inst >= 1 && HasSlot(static_cast<short>(inst)); }

bool InstInList(unsigned int tag, int inst, int list, bool add, bool remove) {
  if (inst < 1) return false;
  if (list == 0) return true;

  Link last;
  bool any = false;
  const bool found = AnyLink(tag, list, [&](Link& link) {
    last = link;
    any = true;
    short* const place = PlaceOf(link.dc, inst);
    if (place == nullptr) return false;
    if (remove) {
      *place = 0;
      sx_saveother(tag, list, link.subIndex, &link.dc, sizeof link.dc);
    }
    return true;
  });
  if (found || !add) return found;

  if (short* const free_place = any ? PlaceOf(last.dc, 0) : nullptr) {
    *free_place = static_cast<short>(inst);
    sx_saveother(tag, list, last.subIndex, &last.dc, sizeof last.dc);
  } else {
    const EDT_DC dc{{static_cast<short>(inst)}};
    int subIndex = EDataID::kHostChooses;
    sx_createother(tag, list, subIndex, &dc, sizeof dc);
  }
  return false;
}

int InstInLists(int inst, int list, bool upper, bool lower) {
  if (inst == 0) return 0;
  int held = 0;
  for (const int asked : {upper ? 1 | 4 : 0, lower ? 2 | 8 : 0}) {
    for (const auto& [bit, tag] : kInstrumentLists) {
      if ((asked & bit) != 0 && InstInList(tag, inst, list, false, false)) held |= bit;
    }
  }
  return held;
}

void DeleteInstFromLists(int inst, int list) {
  if (inst < 1) return;
  for (const auto& [bit, tag] : kInstrumentLists) InstInList(tag, inst, list, false, true);
}

void MakeSureInstIsInLists(int list, int inst, int have, int want) {
  if (inst < 1) return;
  for (const auto& [bit, tag] : kInstrumentLists) {
    if ((want & ~have & bit) != 0) InstInList(tag, inst, list, true, false);
  }
}

bool InstInDC(EDT_DC& dc, int inst, bool add, bool remove) {
  if (inst < 1) return false;
  if (short* const place = PlaceOf(dc, inst)) {
    if (remove) *place = 0;
    return true;
  }
  short* const free_place = add ? PlaceOf(dc, 0) : nullptr;
  if (free_place == nullptr) return false;
  *free_place = static_cast<short>(inst);
  return true;
}

bool ValidInstInDC(EDT_DC& dc) {
  return std::any_of(std::begin(dc.inst), std::end(dc.inst), [](short inst) { return inst > 0 && HasSlot(inst); });
}

bool ValidInstInList(unsigned int tag, int list) {
  return list != 0 && AnyLink(tag, list, [](Link& link) { return ValidInstInDC(link.dc); });
}
