#include "host/runner/report/progress.h"

#include <cstdio>
#include <string>

namespace sok {

void Progress::Show(std::size_t done) const {
  constexpr std::size_t kWidth = 30;
  if (!on_) return;
  const std::size_t filled = kWidth * done / total_;
  const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
  std::fprintf(stderr, "\r[%s] %zu of %zu files", bar.c_str(), done, total_);
  std::fflush(stderr);
}

void Progress::Clear() const {
  if (!on_) return;
  std::fputs("\r\033[K", stderr);
  std::fflush(stderr);
}

}  // namespace sok
