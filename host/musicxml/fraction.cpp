#include "host/musicxml/fraction.h"

#include <limits>
#include <numeric>

#include "host/errors.h"

namespace sok {
namespace {

__extension__ typedef __int128 Wide;

std::int64_t Times(std::int64_t a, std::int64_t b) {
  std::int64_t result = 0;
  if (__builtin_mul_overflow(a, b, &result)) throw Error("a duration is too large");
  return result;
}

std::int64_t Plus(std::int64_t a, std::int64_t b) {
  std::int64_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) throw Error("a duration is too large");
  return result;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace

int Fraction::Compare(const Fraction& other) const {
  const Wide left = Wide{numerator} * other.denominator;
  const Wide right = Wide{other.numerator} * denominator;
  return left < right ? -1 : left > right ? 1 : 0;
}

Fraction operator+(const Fraction& a, const Fraction& b) {
  if (a.denominator == b.denominator) return {Plus(a.numerator, b.numerator), a.denominator};
  const std::int64_t common = Times(a.denominator / std::gcd(a.denominator, b.denominator), b.denominator);
  return {Plus(Times(a.numerator, common / a.denominator), Times(b.numerator, common / b.denominator)), common};
}

Fraction operator-(const Fraction& a, const Fraction& b) { return a + Fraction{-b.numerator, b.denominator}; }

Fraction operator*(const Fraction& a, const Fraction& b) {
  return Reduced({Times(a.numerator, b.numerator), Times(a.denominator, b.denominator)});
}

Fraction operator/(const Fraction& a, const Fraction& b) { return a * Fraction{b.denominator, b.numerator}; }

Fraction Reduced(const Fraction& value) {
  const std::int64_t divisor = std::gcd(value.numerator, value.denominator);
  return {value.numerator / divisor, value.denominator / divisor};
}

bool SameLength(const Fraction& a, const Fraction& b) {
  const Wide distance = Wide{a.numerator} * b.denominator - Wide{b.numerator} * a.denominator;
  const Wide allowed = Wide{a.denominator} * b.denominator / 10000;
  return distance == 0 || (distance < 0 ? -distance : distance) < allowed;
}

std::optional<Fraction> ParseDecimal(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  Fraction value;
  int digits = 0;
  bool point = false;
  for (const char c : text) {
    if (c == '.' && !point) {
      point = true;
      continue;
    }
    if (c < '0' || c > '9' || ++digits > 15) return std::nullopt;
    value.numerator = value.numerator * 10 + (c - '0');
    if (point) value.denominator *= 10;
  }
  if (digits == 0) return std::nullopt;
  if (negative) value.numerator = -value.numerator;
  return point ? Reduced(value) : value;
}

std::string ToDecimal(const Fraction& value) {
  std::string result = std::to_string(value.numerator / value.denominator);
  std::int64_t rest = value.numerator % value.denominator;
  for (int place = 0; place < 6 && rest != 0; ++place) {
    const Wide next = Wide{rest} * 10;
    if (place == 0) result += '.';
    result += static_cast<char>('0' + static_cast<int>(next / value.denominator));
    rest = static_cast<std::int64_t>(next % value.denominator);
  }
  return result;
}

int ToUnits(const Fraction& quarters) {
  const Wide doubled = Wide{quarters.numerator} * 2048;
  const Wide units = (doubled + quarters.denominator) / (Wide{quarters.denominator} * 2);
  if (units > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  return units < 0 ? 0 : static_cast<int>(units);
}

}  // namespace sok
