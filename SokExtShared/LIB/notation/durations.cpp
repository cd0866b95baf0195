#include "SokExtShared/LIB/notation/durations.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr double kLogarithmOf2 = 0.6931471805599453;
constexpr double kLogarithmBias = 1e-8;
constexpr int kLongestBeat = 2048;
constexpr int kHighestPower = 30;  // of the powers of two that an int holds

}  // namespace

int IntLog2(int n) { return n <= 0 ? 0 : static_cast<int>(std::log(n) / kLogarithmOf2 + kLogarithmBias); }

int DotsBase(int duration) {
  return duration <= 0 ? 0 : static_cast<int>(std::ldexp(1.0, std::min(IntLog2(duration), kHighestPower)));
}

// Every dot is half of what stands before it, one bit further down; taking the highest power of two away again and
// again counts the bits.
int CountDots(int duration) { return duration <= 0 ? 0 : std::popcount(static_cast<unsigned int>(duration)) - 1; }

void CalcNumDen(int duration, int& num, int& den) {
  den = std::clamp(DotsBase(duration), 1, kLongestBeat);
  const int length = std::max(duration, 0);
  while (length % den != 0) den /= 2;
  num = length / den;
}

void FindTimeSignature(int duration, short& num, short& den) {
  if (duration <= 0 || den <= 0) return;
  int beat = den;
  while (duration % beat != 0) {
    const int power = DotsBase(beat);
    beat = power == beat ? beat / 2 : power;
  }
  den = static_cast<short>(beat);
  num = static_cast<short>(duration / beat);
}
