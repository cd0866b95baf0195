// Errors of the workbench. What cannot be done is thrown, as one of these; what may not be there is an optional.
//
// A message is whole and names its file, as "file: reason" or "file:line: reason"; inside of a file's reader and writer
// it is the reason alone, and those who know the file put it in front.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace sok {

// What cannot be read, run or written. sokrun prints it as it stands on stderr; exit code 1.
struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What is wrong with a text, and at which byte of it.
struct TextError : Error {
  TextError(std::size_t at, const std::string& reason) : Error(reason), offset(at) {}
  std::size_t offset;
};

// What the command line asks for and cannot have; exit code 2.
struct UsageError : Error {
  using Error::Error;
};

}  // namespace sok
