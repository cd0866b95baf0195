// The entry points that the host calls, over the extension's command table. Compiled into every extension bundle.
#include <algorithm>
#include <iterator>

#include "SokExtShared/LIB/PORTABLE/string_resources.h"
#include "SokExtShared/SokEDK/Source/extension/extension.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

#define SOK_EXPORT __attribute__((visibility("default")))

extern "C" {

SOK_EXPORT int SonkelVersion = 2005;

SOK_EXPORT int main(int count, char** list) {
  if (count == 0 || list == nullptr) return 0;
  return InitializeGlobals() == 0 ? 1 : 0;
}

SOK_EXPORT unsigned int SonkelExtensionVersion(unsigned int hostVersion) {
  SokVersion = hostVersion;
  return kInterfaceVersion;
}

SOK_EXPORT int SonkelExtensionInit(void*, unsigned int* word) {
  *word = 0;
  return 1;
}

SOK_EXPORT unsigned short SonkelExtensionEnumerate_UTF16(void*, int index, EMENUCOMMAND* record) {
  if (index >= kExtension.count) return 0;
  const int number = index & 0xFFFF;
  if (number >= kExtension.count) return 0;
  int resource = kExtension.commands[number].firstText;
  for (auto& text : record->text) PlugIn_GetStringResource(resource++, text, static_cast<short>(std::size(text)));
  record->active = 1;
  return 1;
}

SOK_EXPORT int SonkelExtensionInvoke(void* host, int index, EREGION* region) {
  if (index >= kExtension.count) return 0;
  if (region == nullptr) {
    char text[256];
    PlugIn_GetStringResource(kExtension.noSelectionText, text, sizeof text);
    SX_AlertMessage(host, 48, 0, text, kInterfaceVersion);
    return 0;
  }
  const short layers = SX_GetMaxLayers(kInterfaceVersion);
  const int number = std::min(index & 0xFFFF, kExtension.count - 1);
  return kExtension.commands[number].run(*region, layers);
}

SOK_EXPORT void SonkelExtensionTerminate() {}

SOK_EXPORT int SonkelExtensionGetMenuStatus() { return 1; }

SOK_EXPORT unsigned int Ext_getversion(unsigned int hostVersion) { return SonkelExtensionVersion(hostVersion); }
SOK_EXPORT int Ext_init(void* unused, unsigned int* word) { return SonkelExtensionInit(unused, word); }
SOK_EXPORT unsigned short Ext_enumerate_UTF16(void* unused, int index, EMENUCOMMAND* record) {
  return SonkelExtensionEnumerate_UTF16(unused, index, record);
}
SOK_EXPORT int Ext_invoke(void* host, int index, EREGION* region) { return SonkelExtensionInvoke(host, index, region); }
SOK_EXPORT void Ext_terminate() { SonkelExtensionTerminate(); }
SOK_EXPORT int Ext_getmenustatus() { return SonkelExtensionGetMenuStatus(); }

}  // extern "C"
