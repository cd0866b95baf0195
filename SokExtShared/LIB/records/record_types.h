// The data records that the typed helpers carry: blocks of the host's, of fixed size.
//
// Only the host knows what is in them. The records that are searched (EDTNoteheadMods2012, EDTAccidentalMods2012,
// EDTTieAltRecord) begin with the 16-bit word that the search compares.
#pragma once

// clang-format off
struct EDTInstrumentUsed { unsigned char host[24]; };
struct EDTStaffSystemSpec2005 { unsigned char host[28]; };
struct EDTGroupSpec { unsigned char host[36]; };
struct EDTNoteheadMods2012 { unsigned char host[20]; };
struct EDTAccidentalMods2012 { unsigned char host[20]; };
struct EDTTieAltRecord { unsigned char host[30]; };
struct EDTSecBeamBreak { unsigned char host[10]; };
struct EDTEnclosure { unsigned char host[12]; };
struct EDTMeasureSpec2014 { unsigned char host[30]; };
struct EDTScoreExpression2009 { unsigned char host[24]; };
struct EDTShortcut { unsigned char host[12]; };
struct EDTTuplet2005 { unsigned char host[30]; };
struct EDTStaffSpec2014 { unsigned char host[136]; };
struct EDTEntry { unsigned char host[52]; };
// clang-format on

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
