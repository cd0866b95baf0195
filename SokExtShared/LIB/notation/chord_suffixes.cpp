#include "SokExtShared/LIB/notation/chord_suffixes.h"

#include <algorithm>
#include <limits>

#include "SokExtShared/LIB/notation/first_match.h"
#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace {

bool SameElement(const EDTChordSuffix2012& a, const EDTChordSuffix2012& b) { return ChordSuffixEqual(a, b, true); }

}  // namespace

bool sx_loadchordsuffix(int number, std::vector<EDTChordSuffix2012>& elements) {
  elements.clear();
  for (int i = 0; i <= std::numeric_limits<short>::max(); ++i) {
    EDTChordSuffix2012 element{};
    if (!sx_loadother(record_tags::kChordSuffix, number, i, &element, sizeof element)) break;
    elements.push_back(element);
  }
  return !elements.empty();
}

bool sx_savechordsuffix(int& number, std::vector<EDTChordSuffix2012>& elements) {
  int subIndex = 0;  // the host writes to it
  for (const EDTChordSuffix2012& element : elements) {
    sx_createother(record_tags::kChordSuffix, number, subIndex, &element, sizeof element);
    ++subIndex;
  }
  while (sx_deleteother(record_tags::kChordSuffix, number, static_cast<int>(elements.size()))) {
  }
  return true;
}

int FindOrCreateChordSuffix(std::vector<EDTChordSuffix2012>& elements) {
  std::vector<EDTChordSuffix2012> stored;
  const int found = FirstMatch(kLastDefinition, [&](int number) {
    sx_loadchordsuffix(number, stored);
    return std::equal(stored.begin(), stored.end(), elements.begin(), elements.end(), SameElement);
  });
  if (found != 0) return found;

  int number = EDataID::kHostChooses;
  sx_savechordsuffix(number, elements);
  return number;
}
