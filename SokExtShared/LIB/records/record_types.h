/// @file
/// The data records that the typed helpers carry: blocks of the host's, of fixed size.
///
/// Only the host knows what is in them. The records that are searched (EDTNoteheadMods2012, EDTAccidentalMods2012,
/// EDTTieAltRecord) begin with the 16-bit word that the search compares.
#pragma once

/// Which instrument stands where in a staff list. 'SOIu', `other`: staff list, slot - 1.
struct EDTInstrumentUsed {
  unsigned char host[24];  ///< the host's
};

/// A staff in a system. 'SOSS', `other`: number, 0.
struct EDTStaffSystemSpec2005 {
  unsigned char host[28];  ///< the host's
};

/// A group of staves. 'SDNG', `detail`: staff list, group, 0.
struct EDTGroupSpec {
  unsigned char host[36];  ///< the host's
};

/// A note's own notehead. Tag 0x4502636E, `entryDetail`: entry, place; begins with the note's identifier.
struct EDTNoteheadMods2012 {
  unsigned char host[20];  ///< the host's
};

/// A note's own accidental. Tag 0x45024168, `entryDetail`: entry, place; begins with the note's identifier.
struct EDTAccidentalMods2012 {
  unsigned char host[20];  ///< the host's
};

/// A tie's own shape. The tag is the caller's, `entryDetail`: entry, place; begins with the note's identifier.
struct EDTTieAltRecord {
  unsigned char host[30];  ///< the host's
};

/// Breaks in the secondary beams. 'edsB', `entryDetail`: entry, 0.
struct EDTSecBeamBreak {
  unsigned char host[10];  ///< the host's
};

/// The frame around a text. 'otDe', `other`: number, 0.
struct EDTEnclosure {
  unsigned char host[12];  ///< the host's
};

/// A measure. 'SOMS', `other`: measure, 0.
struct EDTMeasureSpec2014 {
  unsigned char host[30];  ///< the host's
};

/// An expression in a measure. 'SODY', `other`: measure, place; interface version 0x0E000000.
struct EDTScoreExpression2009 {
  unsigned char host[24];  ///< the host's
};

/// A shortcut. The tag is the caller's, `other`: number, 0.
struct EDTShortcut {
  unsigned char host[12];  ///< the host's
};

/// A tuplet. Tag 0x45035450, `entryDetail`: its first entry, place.
struct EDTTuplet2005 {
  unsigned char host[30];  ///< the host's
};

/// A staff as it is at a point. 'SOSC', `detail` with `extraValue`: see sx_loadcurrstaffspec.
struct EDTStaffSpec2014 {
  unsigned char host[136];  ///< the host's
};

/// An entry as a record. 'eteE', `entry`: its number.
struct EDTEntry {
  unsigned char host[52];  ///< the host's
};

static_assert(sizeof(EDTInstrumentUsed) == 24);
static_assert(sizeof(EDTStaffSystemSpec2005) == 28);
static_assert(sizeof(EDTGroupSpec) == 36);
static_assert(sizeof(EDTNoteheadMods2012) == 20);
static_assert(sizeof(EDTAccidentalMods2012) == 20);
static_assert(sizeof(EDTTieAltRecord) == 30);
static_assert(sizeof(EDTSecBeamBreak) == 10);
static_assert(sizeof(EDTEnclosure) == 12);
static_assert(sizeof(EDTMeasureSpec2014) == 30);
static_assert(sizeof(EDTScoreExpression2009) == 24);
static_assert(sizeof(EDTShortcut) == 12);
static_assert(sizeof(EDTTuplet2005) == 30);
static_assert(sizeof(EDTStaffSpec2014) == 136);
static_assert(sizeof(EDTEntry) == 52);
