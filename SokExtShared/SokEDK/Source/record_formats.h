/// @file
/// The formats of data records: structures of fixed size, little-endian and packed to 2 bytes.
///
/// What only the host understands is named `host` and its byte. Tags and keys are those of record_tags.h. The records
/// of smart shapes come with their operations: smart_shape.h, smart_shape_marks.h, center_shape.h.
#pragma once

#include <cstddef>

#pragma pack(push, 2)

/// An instrument: a staff's names, and where its rests stand. Tag kInstrument.
struct EDTInstDefinition {
  short words[4];             ///< what two definitions are compared by: InstDefEquals
  unsigned char host8[16];    ///< the host's
  short restPlacement;        ///< its high byte, signed, says where whole-measure rests stand
  unsigned char host26[4];    ///< the host's
  short fullName;             ///< number of a text block
  short abbreviatedName;      ///< number of a text block
  unsigned char host34[102];  ///< the host's

  /// Where a whole-measure rest stands, as the first word of its note says it.
  short WholeMeasureRestPlacement() const { return static_cast<short>((restPlacement >> 8) + 10); }
};

/// Which instrument stands where in a staff list. Tag kInstrumentUsed.
struct EDTInstrumentUsed {
  unsigned char host[24];  ///< the host's
};

/// One link of an instrument list, a chain of records. Tags kInstrumentList.
struct EDT_DC {
  short inst[6];  ///< instrument numbers, 0 for a free place
};

/// A staff in a system. Tag kStaffSystem.
struct EDTStaffSystemSpec2005 {
  unsigned char host[28];  ///< the host's
};

/// A staff as it is at a point. Tag kStaffInForce; can only be loaded.
struct EDTStaffSpec2014 {
  unsigned char host[136];  ///< the host's
};

/// A group of staves. Tag kGroup.
struct EDTGroupSpec {
  unsigned char host[36];  ///< the host's
};

/// A measure. Tag kMeasure.
struct EDTMeasureSpec2014 {
  unsigned char host[30];  ///< the host's
};

/// An entry as a record. Tag kEntry.
struct EDTEntry {
  unsigned char host[52];  ///< the host's
};

/// A note's own notehead. Tag kNotehead; begins with the note's identifier, which a search compares.
struct EDTNoteheadMods2012 {
  unsigned char host[20];  ///< the host's
};

/// A note's own accidental. Tag kAccidental; begins with the note's identifier, which a search compares.
struct EDTAccidentalMods2012 {
  unsigned char host[20];  ///< the host's
};

/// A tie's own shape. The tag is the caller's, `entryDetail`: entry, place; begins with the note's identifier, which a
/// search compares.
struct EDTTieAltRecord {
  unsigned char host[30];  ///< the host's
};

/// Breaks in the secondary beams. Tag kSecondaryBeamBreak.
struct EDTSecBeamBreak {
  unsigned char host[10];  ///< the host's
};

/// A tuplet. Tag kTuplet.
struct EDTTuplet2005 {
  unsigned char host[30];  ///< the host's
};

namespace edk {

/// An articulation on an entry. Tag kArticulation.
struct ArticulationAssignment {
  short definition;        ///< number of its definition
  short first;             ///< one of the two values that AddArticulation takes
  unsigned char host4[2];  ///< the host's
  short second;            ///< the other value
  unsigned char host8[4];  ///< the host's
};

}  // namespace edk

/// What an articulation is. Tag kArticulationDefinition.
struct EDTArticulationDefinition2012 {
  short words[25];           ///< what two definitions are compared by
  unsigned char host50[10];  ///< the host's
};

/// One element of a chord suffix. Tag kChordSuffix.
struct EDTChordSuffix2012 {
  short words[8];
};

/// A chord symbol.
struct EDTChord2010 {
  short words[3];
  unsigned char host6[12];  ///< the host's
  short word18;
};

/// The formatting of a text, and where its characters are. Tag kTextBlock.
struct EDTTextBlock2004 {
  static constexpr short kOrdinaryKind = 0x626c;  ///< of `textTag`: 'bl'

  short textID;              ///< number of the raw text; -1 before there is one
  unsigned char format[22];  ///< only the host understands it
  short textTag;             ///< kind of the raw text; 0 is the ordinary kind
};

/// A text on a page. Tag kPageText.
struct EDTPageText {
  short textBlock;          ///< number of its text block
  unsigned char host2[22];  ///< the host's
};

/// A text at a measure of a staff. Tag kMeasureText.
struct EDTMeasureText {
  short textBlock;         ///< number of its text block
  unsigned char host2[8];  ///< the host's
};

/// An expression in a measure. Tag kScoreExpression, interface version kVersion.
struct EDTScoreExpression2009 {
  /// With it the host keeps to the layout of that time.
  static constexpr unsigned int kVersion = 0x0E000000;

  unsigned char host[24];  ///< the host's
};

/// The frame around a text. Tag kEnclosure.
struct EDTEnclosure {
  unsigned char host[12];  ///< the host's
};

/// A shortcut. The tag is the caller's, `other`: number, 0.
struct EDTShortcut {
  unsigned char host[12];  ///< the host's
};

/// Where something stands apart from its usual place. Tag kSeparatePlacement.
struct EDTSeparatePlacement {
  short first;             ///< what a search compares
  short second;            ///< what a search compares
  unsigned char host4[8];  ///< the host's
};

/// A fret instrument's definition. Tag kFretInstrument.
struct EDTFretInstrument25_3 {
  unsigned char host[252];  ///< the host's
};

/// Any record of one 12-byte place.
struct EDTGeneric {
  short words[6];
};

#pragma pack(pop)

static_assert(sizeof(EDTInstDefinition) == 136 && offsetof(EDTInstDefinition, restPlacement) == 24);
static_assert(offsetof(EDTInstDefinition, fullName) == 30 && offsetof(EDTInstDefinition, abbreviatedName) == 32);
static_assert(sizeof(EDTInstrumentUsed) == 24);
static_assert(sizeof(EDT_DC) == 12);
static_assert(sizeof(EDTStaffSystemSpec2005) == 28);
static_assert(sizeof(EDTStaffSpec2014) == 136);
static_assert(sizeof(EDTGroupSpec) == 36);
static_assert(sizeof(EDTMeasureSpec2014) == 30);
static_assert(sizeof(EDTEntry) == 52);
static_assert(sizeof(EDTNoteheadMods2012) == 20);
static_assert(sizeof(EDTAccidentalMods2012) == 20);
static_assert(sizeof(EDTTieAltRecord) == 30);
static_assert(sizeof(EDTSecBeamBreak) == 10);
static_assert(sizeof(EDTTuplet2005) == 30);
static_assert(sizeof(edk::ArticulationAssignment) == 12 && offsetof(edk::ArticulationAssignment, second) == 6);
static_assert(sizeof(EDTArticulationDefinition2012) == 60 && offsetof(EDTArticulationDefinition2012, host50) == 50);
static_assert(sizeof(EDTChordSuffix2012) == 16);
static_assert(sizeof(EDTChord2010) == 20 && offsetof(EDTChord2010, word18) == 18);
static_assert(sizeof(EDTTextBlock2004) == 26 && offsetof(EDTTextBlock2004, format) == 2);
static_assert(offsetof(EDTTextBlock2004, textTag) == 24);
static_assert(sizeof(EDTPageText) == 24);
static_assert(sizeof(EDTMeasureText) == 10);
static_assert(sizeof(EDTScoreExpression2009) == 24);
static_assert(sizeof(EDTEnclosure) == 12);
static_assert(sizeof(EDTShortcut) == 12);
static_assert(sizeof(EDTSeparatePlacement) == 12);
static_assert(sizeof(EDTFretInstrument25_3) == 252);
static_assert(sizeof(EDTGeneric) == 12);
