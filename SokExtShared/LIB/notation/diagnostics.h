/// @file
/// Small checks for hunting faults. No host calls.
#pragma once

/// Whether a pointer looks like one: not null, and the four bytes of its low 32 bits are not all the same.
bool ValidPointer(void* pointer);

/// A record tag as text: the low half of the tag first, each half high byte first ('ABCD' reads "CDAB"). The result is
/// a static buffer, overwritten by the next call.
char* TagToString(int tag);
