// The C library's assertion report, in every build type: a broken contract of the kit ends the process with the
// C library's own message. Which C library is chosen by the build.
// For the kit's own sources.
#pragma once

// Prints the report on stderr and aborts.
[[noreturn]] void ReportAssertion(const char* expression, const char* file, int line, const char* function);
