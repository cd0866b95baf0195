/// @file
/// TStringList: a growable list of AnsiString, addressed from 0, with a count kept beside it.
#pragma once

#include <vector>

#include "SokExtShared/LIB/strings/ansi_string.h"

namespace _AStrings {

/// A list of 8-bit strings.
class TStringList {
 public:
  /// Appends a copy; returns the new count, not the index.
  int Add(AnsiString text);

  /// Destroys all strings, last first.
  void Clear();

  /// Removes the string at `index`, which is 0 to Count() - 1; later ones move down by one.
  void Delete(int index);

  /// Indices are 0 to Count() - 1.
  ///@{
  int Count() const { return count_; }
  AnsiString& operator[](int index) { return strings_[static_cast<std::size_t>(index)]; }
  const AnsiString& operator[](int index) const { return strings_[static_cast<std::size_t>(index)]; }
  ///@}

 private:
  std::vector<AnsiString> strings_;
  int count_ = 0;
};

}  // namespace _AStrings

using _AStrings::TStringList;
