#include "SokExtShared/LIB/strings/string_list.h"

#include <utility>

namespace _AStrings {

int TStringList::Add(AnsiString text) {
  strings_.push_back(std::move(text));
  return ++count_;
}

void TStringList::Clear() {
  while (!strings_.empty()) strings_.pop_back();
  count_ = 0;
}

void TStringList::Delete(int index) {
  strings_.erase(strings_.begin() + index);
  --count_;
}

}  // namespace _AStrings
