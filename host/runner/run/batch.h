// Work on many files in processes of their own, so that what one file does to its process harms no other.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace sok {

struct BatchCallbacks {
  // In a child process: does item `index`; the answer travels to the parent. Throws nothing.
  std::function<std::string(std::size_t index)> work;
  // In the parent, in order of the items: the answer, or why there is none ("ended by signal 11 …").
  std::function<void(std::size_t index, std::string answer, std::string failure)> done;
  // In the parent, whenever another item has ended.
  std::function<void(std::size_t ended)> progress;
};

// Runs all items, at most `jobs` at a time. A signal that ends the parent ends the children first. Throws InputError
// when no process can be started.
void RunInProcesses(std::size_t count, int jobs, const BatchCallbacks& callbacks);

}  // namespace sok
