/// @file
/// Formatted UTF-16 text.
#pragma once

/// Formats by the directives of CoreFoundation string formats (`%d`, `%s`, `%S` for UTF-16, `%@` …) and stores at most
/// `capacity` - 1 units and a terminator; returns the number of units stored. `capacity` is at least 1. A format that
/// cannot be served gives the empty text. `to` is written only after the arguments have been read.
int sx_sprintf(unsigned short* to, unsigned long capacity, const unsigned short* format, ...);
