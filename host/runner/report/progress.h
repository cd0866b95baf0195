// A progress bar on stderr, for a terminal.
#pragma once

#include <cstddef>

namespace sok {

class Progress {
 public:
  Progress(std::size_t total, bool on) : total_(total), on_(on) {}
  void Show(std::size_t done) const;
  void Clear() const;

 private:
  std::size_t total_;
  bool on_;
};

}  // namespace sok
