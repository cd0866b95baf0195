#include <cassert>

#include "SokExtShared/SokEDK/Source/sonkelpdk/assertion_report.h"

// Declared by <cassert> only where assert itself is on.
extern "C" [[noreturn]] void __assert_fail(const char*, const char*, unsigned int, const char*) noexcept;

void ReportAssertion(const char* expression, const char* file, int line, const char* function) {
  __assert_fail(expression, file, static_cast<unsigned int>(line), function);
}
