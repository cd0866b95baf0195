// Work in processes of its own, so that what an extension does to its process harms nothing else.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace sok {

// What is said of an answer that an extension tampered with.
inline constexpr const char* kSenselessAnswer = "the process that ran the extension gave an answer that makes no sense";

struct BatchCallbacks {
  // In a child process, whose stdout goes to stderr: does item `index`; the answer travels to the parent. Throws
  // nothing.
  std::function<std::string(std::size_t index)> work;
  // In the parent, in order of the items: the answer, or why there is none ("the extension ended the process …"). An
  // answer is as long as it was when it was sent; what is in it, the parent should not believe unseen.
  std::function<void(std::size_t index, std::string answer, std::string failure)> done;
  // In the parent, whenever another item has ended.
  std::function<void(std::size_t ended)> progress = [](std::size_t) {};
};

struct BatchLimits {
  int jobs = 1;     // items at a time
  int seconds = 0;  // that an item may take; then it is killed, with every process that it started; 0: no limit
};

// Runs all items. Nothing that a child does keeps the parent: not what it left running, stopped, or told signals to do.
// Whatever ends the parent ends the children first. Throws Error when no process can be started.
void RunInProcesses(std::size_t count, const BatchLimits& limits, const BatchCallbacks& callbacks);

// In a child, after foreign code has run: a copy of the process that came back from there, too, ends here.
void EndCopies();

}  // namespace sok
