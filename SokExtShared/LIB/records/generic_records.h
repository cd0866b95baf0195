/// @file
/// Record helpers for tags that the caller chooses, one family for each view of the key.
///
/// Each makes a key from plain numbers (cut to the width of their key field: 16 bits for cmper, secondCmper, subIndex
/// and instance), makes one record call of record_access.h with the interface version, and returns true when the host
/// answered non-zero. Sizes count bytes; buffers are the caller's, hold `size` bytes, and on failure hold what the host
/// left in them. Loads drop the size that the host writes back unless `size` is a reference.
///
/// Numbers taken by reference go into the key, and come back from it after the call whatever its result: cmper and
/// secondCmper as 0 to 65535, subIndex as -32768 to 32767. In creates -1 or 0xFFFF lets the host choose the number. The
/// next and previous calls step to the record's neighbour of the same tag and load it; false when there is none.
#pragma once

/// Records under one number: cmper, subIndex.
///@{
bool sx_loadother(unsigned int tag, int cmper, int subIndex, void* buffer, int size);
bool sx_nextother(unsigned int tag, int& cmper, int& subIndex, void* buffer, int size);
bool sx_saveother(unsigned int tag, int cmper, int subIndex, const void* buffer, int size);
bool sx_deleteother(unsigned int tag, int cmper, int subIndex);
///@}

/// With a `cmper` of 65535 (not -1) `subIndex` becomes 0 first: a new number starts with its first record.
bool sx_createother(unsigned int tag, int& cmper, int& subIndex, const void* buffer, int size);

/// Records under two numbers: cmper, secondCmper, subIndex.
///@{
bool sx_loaddetail(unsigned int tag, int cmper, int secondCmper, void* buffer, int size, int subIndex);
bool sx_nextdetail(unsigned int tag, int& cmper, int& secondCmper, void* buffer, int size, int& subIndex);
bool sx_savedetail(unsigned int tag, int cmper, int secondCmper, const void* buffer, int size, int subIndex);
bool sx_createdetailconstcmper(unsigned int tag, int cmper, unsigned int secondCmper, const void* buffer, int size,
                               int& subIndex);
bool sx_createdetail(unsigned int tag, int cmper, unsigned int& secondCmper, const void* buffer, int size,
                     int& subIndex);
///@}
/// This form brings back `subIndex` only; `cmper` and `secondCmper` keep the caller's values.
///@{
bool sx_createdetail(unsigned int tag, int& cmper, int& secondCmper, const void* buffer, int size, int& subIndex);
bool sx_deletedetail(unsigned int tag, int cmper, int secondCmper, int subIndex);
///@}

/// Records of an entry: entryNum (32 bits), subIndex. The two creates differ in whether `entryNum` comes back.
///@{
bool sx_loadentrydetail(unsigned int tag, int entryNum, int subIndex, void* buffer, int size);
bool sx_saveentrydetail(unsigned int tag, int entryNum, int subIndex, const void* buffer, int size);
bool sx_createentrydetail(unsigned int tag, unsigned int entryNum, int& subIndex, const void* buffer, int size);
bool sx_createentrydetail(unsigned int tag, int& entryNum, int& subIndex, const void* buffer, int size);
bool sx_deleteentrydetail(unsigned int tag, int entryNum, int subIndex);
///@}

/// Global and preference records: instance. The loads zero `size` bytes of the buffer first, so that the caller reads
/// zeros where the host writes nothing. sx_loadglobalwithsize answers the size that the host reports in `size`.
///@{
bool sx_loadglobal(unsigned int tag, int instance, void* buffer, int size);
bool sx_loadglobalwithsize(unsigned int tag, int instance, void* buffer, int& size);
bool sx_saveglobal(unsigned int tag, int instance, void* buffer, int size);
///@}
