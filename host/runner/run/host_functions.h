// The functions of the host interface, by name.
#pragma once

#include <string>
#include <vector>

namespace sok {

// All that a host may have.
const std::vector<std::string>& HostFunctionNames();

// Keeps these functions from the extensions of this process, as a host does that lacks them. Those that were hidden
// before are there again.
void HideHostFunctions(std::vector<std::string> names);

}  // namespace sok
