// What sokrun answers to those who called it.
#pragma once

namespace sok {

inline constexpr int kExitSuccess = 0;      // done, changed or not
inline constexpr int kExitBadInput = 1;     // something could not be read, run or written
inline constexpr int kExitUsage = 2;        // the command line makes no sense
inline constexpr int kExitWouldChange = 3;  // --check: something would change

}  // namespace sok
