/// @file
/// UTF-16 counterparts of the C string functions.
///
/// A string is an array of 16-bit units ended by a zero unit. Lengths, positions, counts and capacities count units; a
/// surrogate pair is two. Nothing is read beyond a string's terminator. No function reports an error, calls the host or
/// allocates; null and overlapping strings are outside the contract of all of them.
#pragma once

/// The number of units before the terminator.
unsigned long sx_strlen(const unsigned short* text);

/// Copies the whole string with its terminator.
void sx_strcpy(unsigned short* to, const unsigned short* from);

/// Copies and appends within `capacity` units, the terminator included. What does not fit is cut; the result is always
/// terminated. With a capacity of 0 nothing is written.
///@{
void sx_strcpy(unsigned short* to, unsigned long capacity, const unsigned short* from);
void sx_strcat(unsigned short* to, unsigned long capacity, const unsigned short* from);
///@}

/// Copies at most `count` units. A shorter source is followed by zeros up to `count`; a source of `count` or more
/// units leaves the result unterminated.
void sx_strncpy(unsigned short* to, const unsigned short* from, unsigned long count);

/// Compare units as unsigned numbers: -1, 0 or 1. A proper prefix is smaller. The second looks at most at `count`
/// units.
///@{
int sx_strcmp(const unsigned short* left, const unsigned short* right);
int sx_strncmp(const unsigned short* left, const unsigned short* right, unsigned long count);
///@}

/// The first place of a unit, or of a whole string; null when absent. The unit 0 is found at the terminator, the empty
/// string at the start.
///@{
unsigned short* sx_strchr(const unsigned short* text, unsigned short unit);
unsigned short* sx_strstr(const unsigned short* text, const unsigned short* part);
///@}
