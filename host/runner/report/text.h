// Small text helpers of the runner.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sok {

std::vector<std::string_view> Split(std::string_view text, char separator);
bool SameIgnoringCase(std::string_view left, std::string_view right);  // ASCII letters only
bool EndsWithIgnoringCase(std::string_view text, std::string_view ending);

// "1 measure", "3 measures", "2 staves".
std::string Counted(long count, std::string_view noun);

// "7" or "7-9".
std::string RangeText(int first, int last);

// Columns that a UTF-8 text takes up, combining marks not counted; and the text filled up with blanks to a width.
std::size_t DisplayWidth(std::string_view text);
std::string Padded(std::string_view text, std::size_t width);

}  // namespace sok
