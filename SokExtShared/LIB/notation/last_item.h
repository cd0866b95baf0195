/// @file
/// The search for the last record of a kind.
#pragma once

/// The highest cmper of the records of `tag` (key view `other`, subIndex 0), looked for from `first` in strides of
/// `step` (as unsigned 16-bit) and then record by record; 0 when there is no record at `first`, whatever comes later.
/// The result is a 16-bit number widened with its sign.
///
/// `buffer` holds `size` bytes and every record read lands in it; the last one read need not be the one returned. The
/// host may lower the size by what it answers to a load, for the calls that follow. Calls SX_LoadEData, SX_NextEData.
int FindLastItem(unsigned int tag, int size, short step, void* buffer, int first);
