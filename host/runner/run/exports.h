// What a shared object says of itself: the names that it offers to others, and the libraries that it needs.
#pragma once

#include <string>
#include <vector>

namespace sok {

// In alphabetical order; none for a file that is no 64-bit ELF object of this machine's byte order.
std::vector<std::string> ExportedNames(const std::string& path);

// The libraries that it is linked with, as its loader finds them: with their paths where a folder of its own has them.
std::vector<std::string> NeededLibraries(const std::string& path);

}  // namespace sok
