// The common form of the record helpers: a key from plain numbers, one record call, its 16-bit result as a bool.
//
// For the kit's own sources. The keys are those of record_keys.h; records of a type of their own bring their size
// along.
#pragma once

#include <type_traits>

#include "SokExtShared/SokEDK/Source/record_keys.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

namespace record_calls {

inline EDataID OtherKey(int cmper, int subIndex) { return edk::OtherKey{cmper, subIndex}.Id(); }
inline EDataID DetailKey(int cmper, int secondCmper, int subIndex) {
  return edk::DetailKey{cmper, secondCmper, subIndex}.Id();
}
inline EDataID StaffInForceKey(int cmper, int secondCmper, int extraValue) {
  return edk::PointKey{cmper, secondCmper, extraValue}.Id();
}
inline EDataID EntryDetailKey(int entryNum, int subIndex) { return edk::EntryDetailKey{entryNum, subIndex}.Id(); }
inline EDataID EntryKey(int entryNum) { return edk::EntryKey{entryNum}.Id(); }
inline EDataID GlobalKey(int instance) { return edk::GlobalKey{instance}.Id(); }

// The size that the host writes back is dropped.
inline bool Load(unsigned int tag, const EDataID& id, void* buffer, int size,
                 unsigned int version = kInterfaceVersion) {
  return SX_LoadEData(tag, &id, buffer, &size, version) != 0;
}
inline bool Save(unsigned int tag, const EDataID& id, const void* buffer, int size,
                 unsigned int version = kInterfaceVersion) {
  return SX_SaveEData(tag, &id, buffer, size, version) != 0;
}
inline bool Create(unsigned int tag, EDataID& id, const void* buffer, int size) {
  return SX_CreateEData(tag, &id, buffer, size, kInterfaceVersion) != 0;
}
inline bool Delete(unsigned int tag, const EDataID& id) { return SX_DeleteEData(tag, &id, kInterfaceVersion) != 0; }
inline bool Next(unsigned int tag, EDataID& id, void* buffer, int size) {
  return SX_NextEData(tag, &id, buffer, size, kInterfaceVersion) != 0;
}
inline bool Previous(unsigned int tag, EDataID& id, void* buffer, int size) {
  return SX_PreviousEData(tag, &id, buffer, size, kInterfaceVersion) != 0;
}

template <typename Record>
requires std::is_class_v<Record>
bool Load(unsigned int tag, const EDataID& id, Record& record, unsigned int version = kInterfaceVersion) {
  return Load(tag, id, &record, static_cast<int>(sizeof record), version);
}
template <typename Record>
requires std::is_class_v<Record>
bool Save(unsigned int tag, const EDataID& id, const Record& record, unsigned int version = kInterfaceVersion) {
  return Save(tag, id, &record, static_cast<int>(sizeof record), version);
}
template <typename Record>
requires std::is_class_v<Record>
bool Create(unsigned int tag, EDataID id, const Record& record) {
  return Create(tag, id, &record, static_cast<int>(sizeof record));
}

}  // namespace record_calls
