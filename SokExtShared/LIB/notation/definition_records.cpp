#include "SokExtShared/LIB/notation/definition_records.h"

#include <algorithm>
#include <iterator>

namespace {

template <std::size_t kCount>
bool WordsEqual(const short (&a)[kCount], const short (&b)[kCount]) {
  return std::equal(a, a + kCount, b);
}

}  // namespace

bool ChordSuffixEqual(EDTChordSuffix2012 a, EDTChordSuffix2012 b, bool ignoreWord4) {
  if (ignoreWord4) a.words[2] = b.words[2];
  return WordsEqual(a.words, b.words);
}

bool ChordEquals(EDTChord2010 a, EDTChord2010 b) { return WordsEqual(a.words, b.words) && a.word18 == b.word18; }

bool InstDefEquals(EDTInstDefinition a, EDTInstDefinition b) { return WordsEqual(a.words, b.words); }

bool GenericEquals(EDTGeneric a, EDTGeneric b) { return WordsEqual(a.words, b.words); }
