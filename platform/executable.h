// Executable images: what is loaded in this process, and what they export.
#pragma once

#include <string>
#include <vector>

namespace sok {

// The absolute path of the running program.
std::string ProgramPath();

// The paths of all images loaded now, links resolved; the program comes first.
std::vector<std::string> LoadedImages();

// Loads an image, its names kept to itself; null when that fails. The running program is the image of its own path.
void* LoadImage(const std::string& path);

// The address that the image itself defines for a name; null when it has none, whatever other images have.
void* FindSymbol(void* image, const char* name);

// Gives one reference to an image back.
void UnloadImage(void* image);

}  // namespace sok
