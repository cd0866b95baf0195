#undef NDEBUG  // <cassert> declares __assert_rtn only where assert itself is on
#include <cassert>

#include "SokExtShared/SokEDK/Source/sonkelpdk/assertion_report.h"

void ReportAssertion(const char* expression, const char* file, int line, const char* function) {
  __assert_rtn(function, file, line, expression);
}
