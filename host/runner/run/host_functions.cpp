#include "host/runner/run/host_functions.h"

#include <algorithm>

#include "platform/SokPlatform.h"

namespace sok {
namespace {

// The platform asks by name, without a place for data of ours.
std::vector<std::string> hidden_functions;

bool IsHidden(const char* name) { return std::ranges::find(hidden_functions, name) != hidden_functions.end(); }

}  // namespace

const std::vector<std::string>& HostFunctionNames() {
  static const std::vector<std::string> names = {
#define SX_ENTRY(result, name, parameters, arguments, fallback) #name,
#define SX_CUSTOM(result, name, parameters, arguments) #name,
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
  };
  return names;
}

void HideHostFunctions(std::vector<std::string> names) {
  hidden_functions = std::move(names);
  SokPlatformHideFunctions(IsHidden);
}

}  // namespace sok
