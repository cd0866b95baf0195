/// @file
/// Preferences as structures, with names for the fields that are known.
///
/// The host keeps most of them field by field; the kit puts the structures together and takes them apart again.
/// Load them with `LoadOrZero`, since a field that the host does not have reads as 0, and store them with `Save`. Of
/// the others the sizes and the widths of their fields are known.
#pragma once

#include "SokExtShared/SokEDK/Source/edk/records.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

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

/// The layers' preferences.
template <>
struct RecordType<LayerPreferences> : Stored<record_tags::kLayerPreferences, GlobalKey> {};

/// The page format, instance 0 the score's, 1 that of its parts.
template <>
struct RecordType<PageFormat> : Stored<record_tags::kPageFormat, GlobalKey> {};

/// A structure of which only the size and the widths of its fields are known; its key is `{}`. Fields are named by
/// their offset in bytes: 16-bit ones are `words[offset / 2]`, 32-bit ones stand with each structure. What they mean is
/// the host's affair.
template <unsigned int kTag, int kWords>
struct UnnamedPreferences {
  short words[kWords];  ///< as the host has them

  /// A 32-bit field.
  ///@{
  int Wide(int offset) const {
    const auto low = static_cast<unsigned short>(words[offset / 2]);
    return static_cast<int>(low | static_cast<unsigned int>(words[offset / 2 + 1]) << 16);
  }
  void SetWide(int offset, int value) {
    words[offset / 2] = static_cast<short>(value);
    words[offset / 2 + 1] = static_cast<short>(value >> 16);
  }
  ///@}
};

/// Their tags are their own.
template <unsigned int kTag, int kWords>
struct RecordType<UnnamedPreferences<kTag, kWords>> : Stored<kTag, GlobalKey> {};

/// How far signs stand from each other. 32-bit: 18, 54.
using DistancePreferences = UnnamedPreferences<FourCharacterTag("pfDP"), 38>;
/// Sizes of signs. 32-bit: 4, 8, 34, 48.
using SizePreferences = UnnamedPreferences<FourCharacterTag("pfSI"), 27>;
/// What fits nowhere else. 32-bit: 84, 88, 96; 12 is a flag, 0 or 1; 52 and 54 are bytes, 0 to 255.
using DocumentPreferences = UnnamedPreferences<FourCharacterTag("pfMS"), 52>;
/// Repeats and endings.
using RepeatPreferences = UnnamedPreferences<FourCharacterTag("pfRP"), 20>;
/// The brace of a piano. All are 32-bit: 0, 4, 8 to 40.
using PianoBracePreferences = UnnamedPreferences<FourCharacterTag("pfPB"), 22>;
/// Smart shapes. 32-bit: 16, 20, 70, 74, 84; 28, 32, 36, 40, 44 and 48 are bytes, 0 to 255, with two bytes behind each
/// that are nobody's.
using SmartShapePreferences = UnnamedPreferences<FourCharacterTag("pfSS"), 54>;
/// Playback.
using PlaybackPreferences = UnnamedPreferences<FourCharacterTag("pfPL"), 7>;
/// Extracted parts.
using ExtractPreferences = UnnamedPreferences<FourCharacterTag("pfEX"), 25>;
/// What came with the host of 2005.
using Preferences2005 = UnnamedPreferences<FourCharacterTag("pf05"), 11>;

}  // namespace edk
