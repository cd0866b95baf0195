#include "SokExtShared/SokEDK/Source/extension/extension.h"

#include <algorithm>
#include <iterator>

#include "SokExtShared/LIB/PORTABLE/string_resources.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/engine_bundle.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace entry_points {

int Main(int count, char** list) {
  if (count == 0 || list == nullptr) return 0;
  return InitializeGlobals() == 0 ? 1 : 0;
}

unsigned int Version(unsigned int hostVersion) {
  SokVersion = hostVersion;
  return kInterfaceVersion;
}

int Init(unsigned int* word) {
  *word = 0;
  return 1;
}

unsigned short Enumerate(const Extension& extension, int index, EMENUCOMMAND* record) {
  if (index >= extension.count) return 0;
  const int number = index & 0xFFFF;
  if (number >= extension.count) return 0;
  int resource = extension.commands[number].firstText;
  for (auto& text : record->text) PlugIn_GetStringResource(resource++, text, static_cast<short>(std::size(text)));
  record->active = 1;
  return 1;
}

int Invoke(const Extension& extension, void* host, int index, EREGION* region) {
  if (index >= extension.count) return 0;
  if (region == nullptr) {
    char text[256];
    PlugIn_GetStringResource(extension.noSelectionText, text, sizeof text);
    SX_AlertMessage(host, 48, 0, text, kInterfaceVersion);
    return 0;
  }
  const short layers = SX_GetMaxLayers(kInterfaceVersion);
  const int number = std::min(index & 0xFFFF, extension.count - 1);
  return extension.commands[number].run(*region, layers);
}

}  // namespace entry_points
