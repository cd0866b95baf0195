/// @file
/// The small types of the host's extension interface: points, regions, the command record, record keys.
///
/// All of them are host formats: little-endian, packed to 2 bytes, every size and offset pinned below.
#pragma once

#include <cstddef>

/// The interface version: the last argument of every host call, and this extension's answer to the version call.
inline constexpr unsigned int kInterfaceVersion = 0x19300000;

#pragma pack(push, 2)

/// A point in the music.
struct EMUSICPOINT {
  unsigned short stafflist;  ///< the staff list that `slot` counts in; 0 is the document's global list
  short slot;                ///< the staff's place in that list
  short measure;
  int position;  ///< within the measure, in duration units (1024 a quarter note)
};

/// A stretch of music. The host's own record may go on behind these two points.
struct EREGION {
  EMUSICPOINT start;
  EMUSICPOINT end;  ///< its slot and measure are inside the region
};

/// One menu command, filled by the extension when the host enumerates its commands.
struct EMENUCOMMAND {
  unsigned short text[3][128];  ///< UTF-16, each ended by a zero unit
  int active;                   ///< 1
};

/// What the host measures of a text: ten 64-bit fields that only the host understands.
struct ETEXTMETRICS {
  long long host[10];
};

#pragma pack(pop)

/// The tag of a data record from its four characters, the first in the highest byte: FourCharacterTag("SOTX").
constexpr unsigned int FourCharacterTag(const char (&text)[5]) {
  unsigned int tag = 0;
  for (int i = 0; i < 4; ++i) tag = tag << 8 | static_cast<unsigned char>(text[i]);
  return tag;
}

/// The key of a data record. The record's tag decides which view is read.
struct EDataID {
  /// In a create: a number that the host finds free. In 16 bits, signed, it is -1.
  static constexpr int kHostChooses = 0xFFFF;
  /// The `cmper` of the document's own records: nearly all per-field records of preferences.
  static constexpr unsigned short kDocument = 0xFFFE;

  /// A number, and a place among the records under it.
  struct Other {
    unsigned short cmper;
    short subIndex;
  };
  /// Two numbers and a place.
  struct Detail {
    unsigned short cmper;
    unsigned short secondCmper;
    union {
      int extraValue;  ///< for the staff spec in force at a point only
      short subIndex;
    };
  };
  /// An entry and a place.
  struct EntryDetail {
    int entryNum;
    short subIndex;
  };
  /// An entry.
  struct Entry {
    int entryNum;
  };
  /// Which instance of a global record.
  struct Global {
    short instance;
  };

  union {
    Detail detail;  ///< first, because it covers all eight bytes: EDataID{} is all zero with every compiler
    Other other;
    EntryDetail entryDetail;
    Entry entry;
    Global global;
  };
};

static_assert(sizeof(short) == 2 && sizeof(int) == 4 && sizeof(long) == 8 && sizeof(void*) == 8, "an LP64 platform");
static_assert(sizeof(EMUSICPOINT) == 10, "EMUSICPOINT size");
static_assert(offsetof(EMUSICPOINT, slot) == 2 && offsetof(EMUSICPOINT, measure) == 4, "EMUSICPOINT offsets");
static_assert(offsetof(EMUSICPOINT, position) == 6, "EMUSICPOINT::position");
static_assert(sizeof(EREGION) == 20 && offsetof(EREGION, end) == 10, "EREGION layout");
static_assert(sizeof(EMENUCOMMAND) == 772 && offsetof(EMENUCOMMAND, active) == 768, "EMENUCOMMAND layout");
static_assert(sizeof(ETEXTMETRICS) == 80, "ETEXTMETRICS size");
static_assert(sizeof(EDataID) == 8 && alignof(EDataID) == 4, "EDataID layout");
static_assert(offsetof(EDataID, other.subIndex) == 2, "EDataID::other");
static_assert(offsetof(EDataID, detail.secondCmper) == 2 && offsetof(EDataID, detail.subIndex) == 4, "EDataID::detail");
static_assert(offsetof(EDataID, detail.extraValue) == 4, "EDataID::detail.extraValue");
static_assert(offsetof(EDataID, entryDetail.subIndex) == 4, "EDataID::entryDetail");
