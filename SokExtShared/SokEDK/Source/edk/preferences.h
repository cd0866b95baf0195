/// @file
/// Preferences as structures, with names for the fields that are known.
///
/// The host keeps most of them field by field; the kit puts the structures together and takes them apart again
/// (preference_tables.h). Load them with `LoadOrZero`, since a field that the host does not have reads as 0, and
/// store them with `Save`. Of the structures without names only the sizes are known.
#pragma once

#include "SokExtShared/SokEDK/Source/edk/records.h"

namespace edk {

/// How a layer behaves; `instance` is the layer, from 0.
struct LayerPreferences {
  unsigned char bytes[4];  ///< as the host has them

  /// Whether a hidden layer that holds music leaves its measure empty.
  bool HiddenCountsAsEmpty() const { return (bytes[2] & 0x02) != 0; }
};

/// The four margins of a page or a system.
struct Margins {
  short top;     ///< from the page's edge, or the staff above
  short left;    ///< from the page's edge
  short bottom;  ///< from the page's edge
  short right;   ///< from the page's edge
};

#pragma pack(push, 2)  // 32-bit fields stand where the host has them
/// The page format of the score. Lengths count 1/288 inch; the fields are those that the workbench fills.
struct PageFormat {
  int height;         ///< of a page
  int width;          ///< of a page
  short percent;      ///< the size of the music, 100 is natural
  Margins leftPage;   ///< of left-hand pages
  Margins system;     ///< the top margin is the distance to the system above
  Margins rightPage;  ///< of right-hand pages
  short host34[2];    ///< the host's
  short pagesDiffer;  ///< 1 when left- and right-hand pages have margins of their own
  short host40[4];    ///< the host's
};
#pragma pack(pop)
static_assert(sizeof(PageFormat) == 48 && offsetof(PageFormat, pagesDiffer) == 38);

/// The layers' preferences: 'pfLA'.
template <>
struct RecordType<LayerPreferences> : Stored<0x70664C41, GlobalKey> {};

/// The page format: 'pfPF', instance 0 the score's, 1 that of its parts.
template <>
struct RecordType<PageFormat> : Stored<0x70665046, GlobalKey> {};

/// A structure of which only the size is known, in 16-bit words; its key is `{}`.
template <unsigned int kTag, int kWords>
struct UnnamedPreferences {
  short words[kWords];  ///< as the host has them
};

/// Their tags are their own.
template <unsigned int kTag, int kWords>
struct RecordType<UnnamedPreferences<kTag, kWords>> : Stored<kTag, GlobalKey> {};

using DistancePreferences = UnnamedPreferences<0x70664450, 38>;    ///< 'pfDP'
using SizePreferences = UnnamedPreferences<0x70665349, 27>;        ///< 'pfSI'
using DocumentPreferences = UnnamedPreferences<0x70664D53, 52>;    ///< 'pfMS': what fits nowhere else
using RepeatPreferences = UnnamedPreferences<0x70665250, 20>;      ///< 'pfRP'
using PianoBracePreferences = UnnamedPreferences<0x70665042, 22>;  ///< 'pfPB': 32-bit fields, low word first
using SmartShapePreferences = UnnamedPreferences<0x70665353, 54>;  ///< 'pfSS'
using PlaybackPreferences = UnnamedPreferences<0x7066504C, 7>;     ///< 'pfPL'
using ExtractPreferences = UnnamedPreferences<0x70664558, 25>;     ///< 'pfEX': extracted parts
using Preferences2005 = UnnamedPreferences<0x70663035, 11>;        ///< 'pf05': what came with the host of 2005

}  // namespace edk
