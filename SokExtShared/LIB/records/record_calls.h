// The common form of the record helpers: a key from plain numbers, one record call, its 16-bit result as a bool.
//
// For the kit's own sources. Numbers are cut to the width of their key field; fields that a key does not name
// are zero. Records of a type of their own bring their size along.
#pragma once

#include <type_traits>

#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

namespace record_calls {

inline EDataID OtherKey(int cmper, int subIndex) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(cmper);
  id.other.subIndex = static_cast<short>(subIndex);
  return id;
}

inline EDataID DetailKey(int cmper, int secondCmper, int subIndex) {
  EDataID id{};
  id.detail.cmper = static_cast<unsigned short>(cmper);
  id.detail.secondCmper = static_cast<unsigned short>(secondCmper);
  id.detail.subIndex = static_cast<short>(subIndex);
  return id;
}

inline EDataID StaffInForceKey(int cmper, int secondCmper, int extraValue) {
  EDataID id = DetailKey(cmper, secondCmper, 0);
  id.detail.extraValue = extraValue;
  return id;
}

inline EDataID EntryDetailKey(int entryNum, int subIndex) {
  EDataID id{};
  id.entryDetail.entryNum = entryNum;
  id.entryDetail.subIndex = static_cast<short>(subIndex);
  return id;
}

inline EDataID EntryKey(int entryNum) {
  EDataID id{};
  id.entry.entryNum = entryNum;
  return id;
}

inline EDataID GlobalKey(int instance) {
  EDataID id{};
  id.global.instance = static_cast<short>(instance);
  return id;
}

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
