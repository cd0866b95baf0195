// A plug-in that hands out its own string resources.
#include "SokExtShared/LIB/PORTABLE/string_resources.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"

#define PROBE extern "C" __attribute__((visibility("default")))

PROBE void ProbeInit() { InitializeGlobals(); }
PROBE unsigned short* ProbeText16(int number, unsigned short* buffer, short capacity) {
  return PlugIn_GetStringResource(number, buffer, capacity);
}
PROBE char* ProbeText8(int number, char* buffer, short capacity) {
  return PlugIn_GetStringResource(number, buffer, capacity);
}
PROBE short ProbeIndexed(short group, short item, char* buffer, short capacity) {
  return LoadIndString(group, item, buffer, capacity);
}
PROBE char* ProbeId(unsigned long id) { return GetResourceCString(id); }
PROBE unsigned short* ProbeId16(unsigned long id) { return GetResourceCString_UTF16(id); }
