#include "SokExtShared/LIB/strings/utf16_format.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstdarg>

#include "SokExtShared/LIB/strings/utf16_strings.h"

int sx_sprintf(unsigned short* to, unsigned long capacity, const unsigned short* format, ...) {
  if (capacity == 0) return 0;
  const CFStringRef directives =
      CFStringCreateWithCharacters(kCFAllocatorDefault, format, static_cast<CFIndex>(sx_strlen(format)));
  CFStringRef text = nullptr;
  if (directives != nullptr) {
    std::va_list arguments;
    va_start(arguments, format);
    text = CFStringCreateWithFormatAndArguments(kCFAllocatorDefault, nullptr, directives, arguments);
    va_end(arguments);
    CFRelease(directives);
  }
  if (text == nullptr) {
    to[0] = 0;
    return 0;
  }
  const unsigned long length = std::min(static_cast<unsigned long>(CFStringGetLength(text)), capacity - 1);
  CFStringGetCharacters(text, CFRangeMake(0, static_cast<CFIndex>(length)), to);
  to[length] = 0;
  CFRelease(text);
  return static_cast<int>(length);
}
