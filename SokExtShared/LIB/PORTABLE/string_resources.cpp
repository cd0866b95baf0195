#include "SokExtShared/LIB/PORTABLE/string_resources.h"

#include <Carbon/Carbon.h>
#include <dlfcn.h>
#include <libgen.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "SokExtShared/SokEDK/Source/sonkelpdk/assertion_report.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace {

constexpr short kStaticCapacity = 1024;

// The bundle in a folder when it has an executable, which tells a plug-in's bundle from any other folder.
CFBundleRef BundleAt(const char* folder) {
  const CFURLRef url = CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(folder), static_cast<CFIndex>(std::strlen(folder)), true);
  if (url == nullptr) return nullptr;
  const CFBundleRef bundle = CFBundleCreate(kCFAllocatorDefault, url);
  CFRelease(url);
  if (bundle == nullptr) return nullptr;
  if (CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleExecutableKey) != nullptr) return bundle;
  CFRelease(bundle);
  return nullptr;
}

std::string ParentOf(std::string path) { return dirname(path.data()); }

CFBundleRef FindPluginBundle() {
  static const char dlbundle[] = "dlbundle";  // any constant of the plug-in tells which image it is in
  Dl_info image = {};
  if (dladdr(dlbundle, &image) == 0 || image.dli_fname == nullptr) return nullptr;
  std::string folder = ParentOf(image.dli_fname), inner;
  do {
    if (const CFBundleRef bundle = BundleAt(folder.c_str())) return bundle;
    inner = folder;
    folder = ParentOf(inner);
  } while (folder != inner && folder != "." && folder != "/");  // "//" is its own parent
  return nullptr;
}

CFBundleRef GetPluginBundle() {
  static CFBundleRef bundleRef = nullptr;
  if (bundleRef == nullptr) bundleRef = FindPluginBundle();
  return bundleRef;
}

CFStringRef CreateKey(int number) {
  const int group = static_cast<short>(number >> 16);
  const int item = static_cast<short>(number);
  return group == 0 ? CFStringCreateWithFormat(kCFAllocatorDefault, nullptr, CFSTR("%d"), item)
                    : CFStringCreateWithFormat(kCFAllocatorDefault, nullptr, CFSTR("%d,%d"), group, item);
}

bool HasStringTable(CFBundleRef bundle) {
  const CFURLRef table = CFBundleCopyResourceURL(bundle, CFSTR("Localizable"), CFSTR("strings"), nullptr);
  if (table == nullptr) return false;
  CFRelease(table);
  return true;
}

int NumberOfId(unsigned long id) {
  const unsigned long value = id < 1000 ? 20000 + id : id;
  return static_cast<int>(value / 1000 * 1000 * 65536 + value % 1000);
}

}  // namespace

CFStringRef CopyPlugInStringResource(int number) {
  const CFBundleRef bundle = GetPluginBundle();
  if (bundle == nullptr) {
    ReportAssertion("bundleRef != NULL", "SokExtShared/LIB/PORTABLE", 176, "CopyPlugInStringResource");
  }
  const CFStringRef key = CreateKey(number);
  if (key == nullptr) return nullptr;
  const CFStringRef text = CFBundleCopyLocalizedString(bundle, key, key, nullptr);
  const bool found = text != nullptr && CFStringCompare(text, key, 0) != kCFCompareEqualTo;
  CFRelease(key);
  if (!found && !HasStringTable(bundle)) {
    SX_AlertMessage(nullptr, 0, 0, "Missing Localizable.strings", kInterfaceVersion);
  }
  return text;
}

unsigned short* PlugIn_GetStringResource(int number, unsigned short* buffer, short capacity) {
  if (capacity <= 0) return nullptr;
  buffer[0] = 0;
  if (const CFStringRef text = CopyPlugInStringResource(number)) {
    const CFIndex length = std::min<CFIndex>(CFStringGetLength(text), capacity - 1);
    CFStringGetCharacters(text, CFRangeMake(0, length), buffer);
    buffer[length] = 0;
    CFRelease(text);
  }
  buffer[capacity - 1] = 0;
  return buffer;
}

char* PlugIn_GetStringResource(int number, char* buffer, short capacity) {
  if (capacity <= 0) return nullptr;
  buffer[0] = 0;
  unsigned char counted[256] = {};
  if (const CFStringRef text = CopyPlugInStringResource(number)) {
    CFStringGetPascalString(text, counted, sizeof counted, GetApplicationTextEncoding());
    CFRelease(text);
  }
  const std::size_t length = counted[0];
  std::memmove(counted, counted + 1, length);
  counted[length] = 0;
  std::strncpy(buffer, reinterpret_cast<const char*>(counted), static_cast<std::size_t>(capacity));
  buffer[capacity - 1] = 0;
  return buffer;
}

short LoadIndString(short group, short item, char* buffer, short capacity) {
  const int number = group * 65536 + static_cast<unsigned short>(item);
  const char* const text = PlugIn_GetStringResource(number, buffer, capacity);
  return text != nullptr ? static_cast<short>(std::strlen(text)) : short{0};
}

char* GetResourceCString(unsigned long id) {
  static char buffer[kStaticCapacity];
  return PlugIn_GetStringResource(NumberOfId(id), buffer, kStaticCapacity);
}

unsigned short* GetResourceCString_UTF16(unsigned long id) {
  static unsigned short buffer[kStaticCapacity];
  return PlugIn_GetStringResource(NumberOfId(id), buffer, kStaticCapacity);
}

void c2p(unsigned char (&counted)[256], const char* text) {
  const std::size_t length = std::min<std::size_t>(std::strlen(text), 255);
  counted[0] = static_cast<unsigned char>(length);
  std::memcpy(counted + 1, text, length);
}

char* MakeGoodMenuString(char* text) { return text; }
