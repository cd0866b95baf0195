// Preferences as structures, with names for the fields that are known.
//
// The host keeps most of them field by field; the kit puts the structures together and takes them apart again
// (preference_tables.h). Load them with LoadOrZero<…>({}), since a field that the host does not have reads as 0, and
// store them with Save({}, …). Of the structures without names only the sizes are known.
#pragma once

#include "SokExtShared/SokEDK/Source/edk/records.h"

namespace edk {

// How a layer behaves; `instance` is the layer, from 0.
struct LayerPreferences {
  unsigned char bytes[4];

  // Whether a hidden layer that holds music leaves its measure empty.
  bool HiddenCountsAsEmpty() const { return (bytes[2] & 0x02) != 0; }
};

// The four margins of a page or a system.
struct Margins {
  short top;
  short left;
  short bottom;
  short right;
};

#pragma pack(push, 2)  // 32-bit fields stand where the host has them
// The page format of the score. Lengths count 1/288 inch; the fields are those that the workbench fills.
struct PageFormat {
  int height;
  int width;
  short percent;  // the size of the music, 100 is natural
  Margins leftPage;
  Margins system;  // the top margin is the distance to the system above
  Margins rightPage;
  short host34[2];
  short pagesDiffer;  // 1 when left- and right-hand pages have margins of their own
  short host40[4];
};
#pragma pack(pop)
static_assert(sizeof(PageFormat) == 48 && offsetof(PageFormat, pagesDiffer) == 38);

// clang-format off
struct DistancePreferences { short words[38]; };
struct SizePreferences { short words[27]; };
struct DocumentPreferences { short words[52]; };
struct RepeatPreferences { short words[20]; };
struct PianoBracePreferences { int words[11]; };
struct SmartShapePreferences { short words[54]; };
struct PlaybackPreferences { short words[7]; };
struct ExtractPreferences { short words[25]; };
struct Preferences2005 { short words[11]; };

template <> struct RecordType<LayerPreferences> : Stored<0x70664C41, GlobalKey> {};       // 'pfLA'
template <> struct RecordType<PageFormat> : Stored<0x70665046, GlobalKey> {};             // 'pfPF': 0 the score's, 1 the parts'
template <> struct RecordType<DistancePreferences> : Stored<0x70664450, GlobalKey> {};    // 'pfDP'
template <> struct RecordType<SizePreferences> : Stored<0x70665349, GlobalKey> {};        // 'pfSI'
template <> struct RecordType<DocumentPreferences> : Stored<0x70664D53, GlobalKey> {};    // 'pfMS'
template <> struct RecordType<RepeatPreferences> : Stored<0x70665250, GlobalKey> {};      // 'pfRP'
template <> struct RecordType<PianoBracePreferences> : Stored<0x70665042, GlobalKey> {};  // 'pfPB'
template <> struct RecordType<SmartShapePreferences> : Stored<0x70665353, GlobalKey> {};  // 'pfSS'
template <> struct RecordType<PlaybackPreferences> : Stored<0x7066504C, GlobalKey> {};    // 'pfPL'
template <> struct RecordType<ExtractPreferences> : Stored<0x70664558, GlobalKey> {};     // 'pfEX'
template <> struct RecordType<Preferences2005> : Stored<0x70663035, GlobalKey> {};        // 'pf05'
// clang-format on

}  // namespace edk
