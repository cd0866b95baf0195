// The names that a shared object offers to others.
#pragma once

#include <string>
#include <vector>

namespace sok {

// In alphabetical order; none for a file that is no 64-bit ELF object of this machine's byte order.
std::vector<std::string> ExportedNames(const std::string& path);

}  // namespace sok
