/// @file
/// The instruments of a staff list: who is in, adding and removing.
///
/// A staff list keeps its instruments in four instrument lists, told apart by a bit in masks and by a record tag. Each
/// is a chain of EDT_DC records, key view `other`: list number, 0, 1, 2 … List number 0 is the global list, which holds
/// every instrument and is never read. Host failures show as a negative answer; those of saves and creates do not show.
#pragma once

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

/// The four lists: their bits in masks and their record tags.
inline constexpr struct {
  int bit;
  unsigned int tag;
} kInstrumentLists[] = {
    {1, record_tags::kInstrumentList[0]},
    {2, record_tags::kInstrumentList[1]},
    {4, record_tags::kInstrumentList[2]},
    {8, record_tags::kInstrumentList[3]},
};

/// Whether the number is above 0 and, cut to 16 bits, has a slot in the global staff list (SX_InstToSlot).
bool InstValid(int inst);

/// Whether the instrument is in the list at the moment of the call; false for numbers below 1. `remove` frees its first
/// place. `add` puts one that is not there into the first free place of the list's last record, or else into a new
/// record.
bool InstInList(unsigned int tag, int inst, int list, bool add, bool remove);

/// The bits of the lists that hold the instrument: of 1 and 4 with `upper`, of 2 and 8 with `lower`.
int InstInLists(int inst, int list, bool upper, bool lower);

/// Removes the instrument from all four lists.
void DeleteInstFromLists(int inst, int list);

/// Adds the instrument to the lists whose bit is in `want` and not in `have`; the others are not read.
void MakeSureInstIsInLists(int list, int inst, int have, int want);

/// The same question about one record in memory; nothing is stored. With `add` the result is whether the instrument is
/// in the record afterwards: false only when all places are taken.
bool InstInDC(EDT_DC& dc, int inst, bool add, bool remove);

/// Whether a record, or a list, names an instrument that has a slot in the global staff list. False for list 0.
///@{
bool ValidInstInDC(EDT_DC& dc);
bool ValidInstInList(unsigned int tag, int list);
///@}
