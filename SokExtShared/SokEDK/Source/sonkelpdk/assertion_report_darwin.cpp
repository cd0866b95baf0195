#include <cassert>

#include "SokExtShared/SokEDK/Source/sonkelpdk/assertion_report.h"

extern "C" [[noreturn]] void __assert_rtn(const char*, const char*, int, const char*);

void ReportAssertion(const char* expression, const char* file, int line, const char* function) {
  __assert_rtn(function, file, line, expression);
}
