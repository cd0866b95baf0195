#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

#include "SokExtShared/SokEDK/Source/sonkelpdk/binding.h"

namespace {

// Without the host a text measures nothing.
void ZeroTextMetrics(ETEXTMETRICS* metrics) { *metrics = {}; }

}  // namespace

#define SX_ENTRY(result, name, parameters, arguments, fallback) \
  result name parameters {                                      \
    SX_BIND(name);                                              \
    if (fpProc == nullptr) return fallback;                     \
    return fpProc arguments;                                    \
  }
#define SX_CUSTOM(result, name, parameters, arguments)
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.def"
