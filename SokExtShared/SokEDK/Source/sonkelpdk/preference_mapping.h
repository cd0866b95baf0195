// Preference structures and arrays ('pf…' tags), put together from the host's per-field records and taken apart again.
//
// Per-field records are loaded and saved by the host itself, 12 bytes each and with the interface version, and what it
// answers to them is not looked at. A record that cannot be loaded reads as zeros, so its
// fields receive 0 (a negated flag: 1). A structure saves only the records in which a word changes.
// For the kit's own sources.
#pragma once

#include <array>
#include <span>

#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/preference_tables.h"

// The host's own functions behind the wrappers of the same names, looked up once; null when the host lacks them.
decltype(SX_LoadEData)* HostLoadEData();
decltype(SX_SaveEData)* HostSaveEData();

// Whether a tag begins with 'pf'.
constexpr bool IsPreferenceTag(unsigned int tag) { return tag >> 16 == 0x7066; }

// Serves a load of a preference tag: true when this tag and instance are mapped, or the instance is out of the tag's
// range, and `result` is the call's answer (1, or 0 for an instance out of range, a null `size` or, for arrays, a
// buffer too small). A null buffer gives the size only. False: the tag is no preference tag, nothing was done.
// The buffer of a structure must hold all of it, which `size` is not compared with. 'pfSS' reports 96 and fills 108.
bool LoadPreference(unsigned int tag, const EDataID* id, void* buffer, int* size, short& result);

// The same for a save. It answers 0 without a host call when the buffer is null or `size` is too small: below 12 bytes
// a record for arrays, below 2 bytes a table row for structures (less than some structures take).
bool SavePreference(unsigned int tag, const EDataID* id, const void* buffer, int size, short& result);

// How an array of 12-byte records stands behind a preference tag: under `mappedTag`, cmper 65534, `count` records with
// subIndex `firstSubIndex` and on. False when the instance is out of the tag's range; true with a `mappedTag` of 0 for
// a tag that is no such array. Outputs not filled in are 0.
bool mapPrefTag(unsigned int tag, short instance, unsigned int* mappedTag, short* count, short* firstSubIndex);

// A preference structure: the tag it is asked for by, its table, and what the table's code does.
struct PreferenceTable {
  unsigned int tag;
  std::span<const PrefMapRow> rows;
  int size;                                      // the size in bytes that a load reports
  void (*load)(unsigned char* structure);        // fills every field
  void (*save)(const unsigned char* structure);  // saves the records in which a word changes
};

// All ten.
extern const std::array<PreferenceTable, 10> kPreferenceTables;
