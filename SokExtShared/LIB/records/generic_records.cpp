#include "SokExtShared/LIB/records/generic_records.h"

#include <cstring>

#include "SokExtShared/LIB/records/record_calls.h"

using namespace record_calls;

namespace {

void ZeroBuffer(void* buffer, int size) {
  if (buffer != nullptr && size > 0) std::memset(buffer, 0, static_cast<std::size_t>(size));
}

}  // namespace

bool sx_loadother(unsigned int tag, int cmper, int subIndex, void* buffer, int size) {
  return Load(tag, OtherKey(cmper, subIndex), buffer, size);
}

bool sx_nextother(unsigned int tag, int& cmper, int& subIndex, void* buffer, int size) {
  EDataID id = OtherKey(cmper, subIndex);
  const bool found = Next(tag, id, buffer, size);
  cmper = id.other.cmper;
  subIndex = id.other.subIndex;
  return found;
}

bool sx_saveother(unsigned int tag, int cmper, int subIndex, const void* buffer, int size) {
  return Save(tag, OtherKey(cmper, subIndex), buffer, size);
}

bool sx_createother(unsigned int tag, int& cmper, int& subIndex, const void* buffer, int size) {
  if (cmper == 65535) subIndex = 0;
  EDataID id = OtherKey(cmper, subIndex);
  const bool created = Create(tag, id, buffer, size);
  subIndex = id.other.subIndex;
  cmper = id.other.cmper;
  return created;
}

bool sx_deleteother(unsigned int tag, int cmper, int subIndex) { return Delete(tag, OtherKey(cmper, subIndex)); }

bool sx_loaddetail(unsigned int tag, int cmper, int secondCmper, void* buffer, int size, int subIndex) {
  return Load(tag, DetailKey(cmper, secondCmper, subIndex), buffer, size);
}

bool sx_nextdetail(unsigned int tag, int& cmper, int& secondCmper, void* buffer, int size, int& subIndex) {
  EDataID id = DetailKey(cmper, secondCmper, subIndex);
  const bool found = Next(tag, id, buffer, size);
  cmper = id.detail.cmper;
  secondCmper = id.detail.secondCmper;
  subIndex = id.detail.subIndex;
  return found;
}

bool sx_savedetail(unsigned int tag, int cmper, int secondCmper, const void* buffer, int size, int subIndex) {
  return Save(tag, DetailKey(cmper, secondCmper, subIndex), buffer, size);
}

bool sx_createdetailconstcmper(unsigned int tag, int cmper, unsigned int secondCmper, const void* buffer, int size,
                               int& subIndex) {
  EDataID id = DetailKey(cmper, static_cast<int>(secondCmper), subIndex);
  const bool created = Create(tag, id, buffer, size);
  subIndex = id.detail.subIndex;
  return created;
}

bool sx_createdetail(unsigned int tag, int cmper, unsigned int& secondCmper, const void* buffer, int size,
                     int& subIndex) {
  EDataID id = DetailKey(cmper, static_cast<int>(secondCmper), subIndex);
  const bool created = Create(tag, id, buffer, size);
  secondCmper = id.detail.secondCmper;
  subIndex = id.detail.subIndex;
  return created;
}

bool sx_createdetail(unsigned int tag, int& cmper, int& secondCmper, const void* buffer, int size, int& subIndex) {
  return sx_createdetailconstcmper(tag, cmper, static_cast<unsigned int>(secondCmper), buffer, size, subIndex);
}

bool sx_deletedetail(unsigned int tag, int cmper, int secondCmper, int subIndex) {
  return Delete(tag, DetailKey(cmper, secondCmper, subIndex));
}

bool sx_loadentrydetail(unsigned int tag, int entryNum, int subIndex, void* buffer, int size) {
  return Load(tag, EntryDetailKey(entryNum, subIndex), buffer, size);
}

bool sx_saveentrydetail(unsigned int tag, int entryNum, int subIndex, const void* buffer, int size) {
  return Save(tag, EntryDetailKey(entryNum, subIndex), buffer, size);
}

bool sx_createentrydetail(unsigned int tag, int& entryNum, int& subIndex, const void* buffer, int size) {
  EDataID id = EntryDetailKey(entryNum, subIndex);
  const bool created = Create(tag, id, buffer, size);
  entryNum = id.entryDetail.entryNum;
  subIndex = id.entryDetail.subIndex;
  return created;
}

bool sx_createentrydetail(unsigned int tag, unsigned int entryNum, int& subIndex, const void* buffer, int size) {
  int number = static_cast<int>(entryNum);
  return sx_createentrydetail(tag, number, subIndex, buffer, size);
}

bool sx_deleteentrydetail(unsigned int tag, int entryNum, int subIndex) {
  return Delete(tag, EntryDetailKey(entryNum, subIndex));
}

bool sx_loadglobal(unsigned int tag, int instance, void* buffer, int size) {
  return sx_loadglobalwithsize(tag, instance, buffer, size);
}

bool sx_loadglobalwithsize(unsigned int tag, int instance, void* buffer, int& size) {
  ZeroBuffer(buffer, size);
  const EDataID id = GlobalKey(instance);
  return SX_LoadEData(tag, &id, buffer, &size, kInterfaceVersion) != 0;
}

bool sx_saveglobal(unsigned int tag, int instance, void* buffer, int size) {
  return Save(tag, GlobalKey(instance), buffer, size);
}
