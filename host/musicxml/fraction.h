// Exact lengths and places in the music, in quarter notes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace sok {

struct Fraction {
  std::int64_t numerator = 0;
  std::int64_t denominator = 1;  // always above 0; not always reduced

  bool operator==(const Fraction& other) const { return Compare(other) == 0; }
  bool operator<(const Fraction& other) const { return Compare(other) < 0; }
  bool IsZero() const { return numerator == 0; }
  int Compare(const Fraction& other) const;
};

// These throw Error where a number is too large to reckon with, as none in a real score is.
Fraction operator+(const Fraction& a, const Fraction& b);
Fraction operator-(const Fraction& a, const Fraction& b);
Fraction operator*(const Fraction& a, const Fraction& b);  // reduced
Fraction operator/(const Fraction& a, const Fraction& b);  // b is above 0
Fraction Reduced(const Fraction& value);

// Equal, but for what is lost where a duration that no decimal number of its divisions can say is written cut.
bool SameLength(const Fraction& a, const Fraction& b);

// A decimal number as the schema has them ("4", "0.5"), blanks around it allowed. None for anything else and for
// numbers of more than 15 digits.
std::optional<Fraction> ParseDecimal(std::string_view text);

// As a decimal number, cut (never rounded up) after six places.
std::string ToDecimal(const Fraction& value);

// In duration units, 1024 a quarter note, rounded; at most the largest int.
int ToUnits(const Fraction& quarters);

}  // namespace sok
