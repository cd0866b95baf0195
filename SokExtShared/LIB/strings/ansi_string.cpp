#include "SokExtShared/LIB/strings/ansi_string.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "SokExtShared/LIB/strings/narrow_strings.h"
#include "SokExtShared/LIB/strings/positions.h"

namespace _AStrings {

char c_str_buf_rot[10][2048];
int c_str_buf_num = 0;

namespace {

int Compare(const std::string& left, const std::string& right) {
  const int order = std::memcmp(left.data(), right.data(), std::min(left.size(), right.size()));
  if (order != 0) return order;
  return (left.size() > right.size()) - (left.size() < right.size());
}

}  // namespace

AnsiString& AnsiString::operator+=(const AnsiString& tail) {
  text_ += tail.text_;
  return *this;
}

AnsiString AnsiString::operator+(const AnsiString& tail) const {
  AnsiString sum = *this;
  sum += tail;
  return sum;
}

AnsiString operator+(const char* head, const AnsiString& tail) { return AnsiString(head) + tail; }

int AnsiString::AnsiCompare(const AnsiString& other) const {
  return Compare(UpperCase().text_, other.UpperCase().text_);
}

int AnsiString::AnsiCompareIC(const AnsiString& other) const { return Compare(text_, other.text_); }

int AnsiString::Pos(const AnsiString& part) const { return positions::Pos(text_, part.text_); }

char& AnsiString::operator[](int position) {
  ThrowIfOutOfRange(position);
  return text_[static_cast<std::size_t>(position - 1)];
}

void AnsiString::ThrowIfOutOfRange(int& position) {
  if (position >= 1 && position <= Length()) return;
  position = 1;
  if (text_.empty()) text_ = " ";
}

const char* AnsiString::c_str() const {
  c_str_buf_num = (c_str_buf_num + 1) % 10;
  char(&buffer)[2048] = c_str_buf_rot[c_str_buf_num];
  std::strncpy(buffer, text_.c_str(), sizeof buffer);
  buffer[sizeof buffer - 1] = 0;
  return buffer;
}

AnsiString& AnsiString::Insert(const AnsiString& part, int position) {
  text_.insert(static_cast<std::size_t>(std::max(position, 1) - 1), part.text_);
  return *this;
}

AnsiString& AnsiString::Delete(unsigned int position, int count) {
  positions::Delete(text_, position, count);
  return *this;
}

AnsiString& AnsiString::SetLength(unsigned int length) {
  positions::SetLength(text_, length);
  return *this;
}

AnsiString AnsiString::UpperCase() const {
  AnsiString upper = *this;
  for (char& byte : upper.text_) byte = static_cast<char>(UpperByte(byte));
  return upper;
}

AnsiString AnsiString::Trim() const { return TrimLeft().TrimRight(); }

AnsiString AnsiString::TrimLeft() const {
  AnsiString trimmed = *this;
  trimmed.text_.erase(0, text_.find_first_not_of(' '));
  return trimmed;
}

AnsiString AnsiString::TrimRight() const {
  AnsiString trimmed = *this;
  trimmed.text_.resize(text_.find_last_not_of(' ') + 1);  // npos + 1 is 0
  return trimmed;
}

AnsiString AnsiString::SubString(int position, int count) const {
  AnsiString part;
  part.text_ = positions::SubString(text_, position, count);
  return part;
}

int StrToIntDef(AnsiString text, int otherwise) {
  char* end = nullptr;
  const long number = std::strtol(text.text_.c_str(), &end, 10);
  return end == text.text_.c_str() ? otherwise : static_cast<int>(number);
}

AnsiString IntToStr(long number) { return AnsiString(number).SetLength(18); }

AnsiString p2ansi(const unsigned char* counted) {
  char text[256] = {};
  std::memcpy(text, counted + 1, counted[0]);
  return text;
}

}  // namespace _AStrings
