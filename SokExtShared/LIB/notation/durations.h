/// @file
/// Durations as powers of two, dots and beats. Integers, in duration units (1024 a quarter note); no host calls.
#pragma once

/// The base-2 logarithm, truncated: the integer part of ln(n) / ln 2 + 1e-8 in double precision. The bias makes up for
/// the rounding of the logarithms, and reaches the next integer from 2^28 - 1 on: IntLog2((1 << 30) - 1) is 30. 0 for
/// 0 and less.
int IntLog2(int n);

/// The largest power of two not above `duration`, as IntLog2 sees it and at most 2^30; 0 for 0 and less.
int DotsBase(int duration);

/// The number of dots: that of the set bits less one, be they side by side or not. 0 for 0 and less.
int CountDots(int duration);

/// duration = num * den, with den the largest power of two for which that holds, at most 2048. 0 * 1 for 0 and less.
void CalcNumDen(int duration, int& num, int& den);

/// Looks for the first beat that `duration` is a multiple of, from the beat length passed in `den` down: a length that
/// is no power of two gives way to the next power of two below it, a power of two to its half. Leaves both arguments
/// alone when `duration` or `den` is 0 or less. `num` receives the low 16 bits of the count: 40000 beats come out as
/// -25536.
void FindTimeSignature(int duration, short& num, short& den);
