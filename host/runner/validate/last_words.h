// What a check's process leaves behind for its parent, whatever ends it.
#pragma once

#include <cstddef>
#include <string>

namespace sok {

// One text for each of a number of processes, in memory that they share with their parent.
class LastWords {
 public:
  explicit LastWords(std::size_t count);  // throws Error when there is no memory
  ~LastWords();
  LastWords(const LastWords&) = delete;
  LastWords& operator=(const LastWords&) = delete;

  // Replaces a text; cut to what there is room for. May be called from a signal handler.
  void Say(std::size_t index, const char* text);
  std::string Of(std::size_t index) const;

 private:
  static constexpr std::size_t kLength = 512;

  std::size_t size_;
  char* texts_;
};

}  // namespace sok
