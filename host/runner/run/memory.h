// What happens when memory runs out: the program says so and ends at once, and what it was writing is removed.
//
// Nothing is unwound. Extensions and the interfaces between them and their host are not made for exceptions, and a host
// call that quietly failed would look like an extension that found nothing to do.
#pragma once

#include <string>

namespace sok {

// Sets this up for the whole process, extensions included. Exit code 1.
void EndWhenMemoryRunsOut();

// In a worker process: without a message, and with this exit status, from which the parent knows.
inline constexpr int kOutOfMemoryStatus = 12;
void EndSilentlyWhenMemoryRunsOut();

// The file that the message names from now on.
void NameWork(const std::string& file);

}  // namespace sok
