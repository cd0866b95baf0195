/// @file
/// The host's frame record and its entries: the music of one layer of one staff in one measure.
///
/// Host formats, little-endian and packed to 2 bytes: pointers and 32-bit fields stand at odd places. Copy a wide
/// member into a local before anything takes a reference or a pointer to it.
#pragma once

#include <cstddef>

/// Bits of EXENTRY::flags.
inline constexpr unsigned int kEntryLegal = 0x80000000;             ///< bit 31: set in every rest that is inserted
inline constexpr unsigned int kEntryIsNote = 0x40000000;            ///< bit 30: notes have it, rests do not
inline constexpr unsigned int kEntryHasRestNote = 0x01000000;       ///< bit 24: a rest that carries a note record
inline constexpr unsigned int kEntryHasNoteheads = 0x00400000;      ///< bit 22: notehead changes are attached
inline constexpr unsigned int kEntryHasArticulations = 0x00200000;  ///< bit 21: articulations are attached
inline constexpr unsigned int kEntryRestPlaced = 0x00000800;        ///< bit 11: set in the rests that are inserted

/// Bits of EXNOTE::flags: bits 16 to 20 mirror the note identifier.
///@{
inline constexpr unsigned int kNoteLegal = 0x80000000;
inline constexpr unsigned int kNoteIdentifierMask = 0x001F0000;
///@}

/// A whole-measure rest lasts this long whatever the time signature.
inline constexpr unsigned short kWholeRestDuration = 4096;

#pragma pack(push, 2)

/// One note of an entry.
struct EXNOTE {
  short first;         ///< a rest's placement value, else host data
  short second;        ///< host data
  short identifier;    ///< unique in the entry, not 0 once tidied; key of the note's own records
  unsigned int flags;  ///< kNote… bits
};

/// One entry: a note, a chord or a rest.
struct EXENTRY {
  static constexpr int kMostNotes = 12;  ///< of a chord

  /// Does nothing. A type with a destructor makes array new keep its element count in front of the elements, which is
  /// how host and extension allocate entry arrays for each other.
  ~EXENTRY() {}

  int number;                 ///< the host's number of the entry, key of its detail records
  unsigned short duration;    ///< in duration units: 1024 a quarter note
  unsigned char host6[2];     ///< the host's
  unsigned int flags;         ///< kEntry… bits
  unsigned short host12;      ///< 0x0080 in the rests that are inserted
  short noteCount;            ///< 0 to kMostNotes
  EXNOTE notes[kMostNotes];   ///< the first `noteCount` of them
  unsigned char host136[10];  ///< the host's
};

/// An element of a frame's second array, which only the host understands.
struct EXHOSTDATA {
  ~EXHOSTDATA() {}
  unsigned char host0[2];  ///< the host's
};

/// A frame. One that SX_LoadTGF handed out is the host's and goes back with SX_FreeTGF; one that the extension builds
/// is its own. EXTGF2005a{} is all zero. A frame owns its arrays, so it is not copied.
struct EXTGF2005a {
  EXTGF2005a() = default;
  EXTGF2005a(const EXTGF2005a&) = delete;
  EXTGF2005a& operator=(const EXTGF2005a&) = delete;
  /// Releases both arrays with array delete, each only when there is one.
  ~EXTGF2005a();

  unsigned short key[6];         ///< which frame this is, for a save; set by the host
  unsigned short host12;         ///< 0 in a frame that the extension builds
  EXENTRY* entries = nullptr;    ///< `count` entries from array new; null when there are none
  short count;                   ///< of entries
  EXHOSTDATA* second = nullptr;  ///< from array new; null in a frame that the extension builds
  unsigned short host32;         ///< 0 in a frame that the extension builds
};

#pragma pack(pop)

static_assert(sizeof(EXNOTE) == 10, "EXNOTE size");
static_assert(offsetof(EXNOTE, second) == 2 && offsetof(EXNOTE, identifier) == 4, "EXNOTE offsets");
static_assert(offsetof(EXNOTE, flags) == 6, "EXNOTE::flags");
static_assert(sizeof(EXENTRY) == 146, "EXENTRY size");
static_assert(offsetof(EXENTRY, number) == 0 && offsetof(EXENTRY, duration) == 4, "EXENTRY::duration");
static_assert(offsetof(EXENTRY, host6) == 6 && offsetof(EXENTRY, flags) == 8, "EXENTRY::flags");
static_assert(offsetof(EXENTRY, host12) == 12 && offsetof(EXENTRY, noteCount) == 14, "EXENTRY::noteCount");
static_assert(offsetof(EXENTRY, notes) == 16 && offsetof(EXENTRY, host136) == 136, "EXENTRY::notes");
static_assert(sizeof(EXTGF2005a) == 34, "EXTGF2005a size");
static_assert(offsetof(EXTGF2005a, key) == 0 && offsetof(EXTGF2005a, host12) == 12, "EXTGF2005a::key");
static_assert(offsetof(EXTGF2005a, entries) == 14 && offsetof(EXTGF2005a, count) == 22, "EXTGF2005a::entries");
static_assert(offsetof(EXTGF2005a, second) == 24 && offsetof(EXTGF2005a, host32) == 32, "EXTGF2005a::second");
