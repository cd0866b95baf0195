#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

#include <algorithm>
#include <cstring>

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/assertion_report.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/binding.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_mapping.h"

using record_tags::kFretInstrument;

namespace {

constexpr unsigned int kFirstVersionWithPreferences = 0x08000000;  // older callers see the records as the host has them

using LoadFunction = decltype(SX_LoadEData);

// The first of the two host loads of a fret-instrument record, of which the host may say that it failed although it
// filled the record. Returns true when that load was answered with success and the record is to be asked for again.
bool LoadFretInstrument(LoadFunction* load, const EDataID* id, void* buffer, int* size, unsigned int version,
                        short& result) {
  if (size == nullptr || static_cast<unsigned int>(*size) < sizeof(EDTFretInstrument25_3)) {
    ReportAssertion("*size >= sizeof(EDTFretInstrument25_3)", "SokExtShared/SokEDK/Source/sonkelpdk", 1442,
                    "SX_LoadEData");
  }
  std::memset(buffer, 0, sizeof(EDTFretInstrument25_3));
  result = 0;
  if (load == nullptr) return false;
  if (load(kFretInstrument, id, buffer, size, version) != 0) return true;
  const auto* const bytes = static_cast<const unsigned char*>(buffer);
  result = std::any_of(bytes, bytes + sizeof(EDTFretInstrument25_3), [](unsigned char byte) { return byte != 0; });
  return false;
}

// The loads that do more than pass on. A function of its own, so that the others, which are most, need no stack frame.
[[gnu::noinline]] short LoadSpecial(LoadFunction* load, unsigned int tag, const EDataID* id, void* buffer, int* size,
                                    unsigned int version) {
  short result = 0;
  if (tag == kFretInstrument && buffer != nullptr) {
    const int capacity = size != nullptr ? *size : 0;
    if (!LoadFretInstrument(load, id, buffer, size, version, result)) return result;
    *size = capacity;  // the host wrote the record's size there, which may be beyond the buffer
  }
  if (LoadPreference(tag, id, buffer, size, result)) return result;
  return load != nullptr ? load(tag, id, buffer, size, version) : short{0};
}

}  // namespace

decltype(SX_LoadEData)* HostLoadEData() {
  SX_BIND(SX_LoadEData);
  return fpProc;
}

decltype(SX_SaveEData)* HostSaveEData() {
  SX_BIND(SX_SaveEData);
  return fpProc;
}

short SX_LoadEData(unsigned int tag, const EDataID* id, void* buffer, int* size, unsigned int version) {
  LoadFunction* const load = HostLoadEData();
  if (tag == kFretInstrument || IsPreferenceTag(tag)) return LoadSpecial(load, tag, id, buffer, size, version);
  return load != nullptr ? load(tag, id, buffer, size, version) : short{0};
}

short SX_SaveEData(unsigned int tag, const EDataID* id, const void* buffer, int size, unsigned int version) {
  decltype(SX_SaveEData)* const save = HostSaveEData();
  short result = 0;
  if (version >= kFirstVersionWithPreferences && SavePreference(tag, id, buffer, size, result)) return result;
  return save != nullptr ? save(tag, id, buffer, size, version) : short{0};
}
