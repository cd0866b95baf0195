/// @file
/// The records that are known: their tags, the views of their keys, and what their fields mean where that is known.
#pragma once

#include "SokExtShared/LIB/notation/definition_records.h"
#include "SokExtShared/LIB/records/record_types.h"
#include "SokExtShared/LIB/records/separate_placement.h"
#include "SokExtShared/LIB/smartshapes/center_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/LIB/text/measure_texts.h"
#include "SokExtShared/LIB/text/page_texts.h"
#include "SokExtShared/LIB/text/text_blocks.h"
#include "SokExtShared/SokEDK/Source/edk/records.h"

namespace edk {

/// An instrument: a staff's name and where its rests stand.
struct InstrumentDefinition {
  unsigned char host0[24];    ///< the host\'s
  short restPlacement;        ///< its high byte, signed, says where whole-measure rests stand
  unsigned char host26[4];    ///< the host\'s
  short fullName;             ///< number of a text block
  short abbreviatedName;      ///< number of a text block
  unsigned char host34[102];  ///< the host\'s

  /// Where a whole-measure rest stands, as the first word of its note says it.
  short WholeMeasureRestPlacement() const { return static_cast<short>((restPlacement >> 8) + 10); }
};
static_assert(sizeof(InstrumentDefinition) == 136 && offsetof(InstrumentDefinition, restPlacement) == 24);
static_assert(offsetof(InstrumentDefinition, fullName) == 30);

/// An articulation on an entry.
struct ArticulationAssignment {
  short definition;        ///< number of its definition
  short first;             ///< one of the two values that AddArticulation takes
  unsigned char host4[2];  ///< the host\'s
  short second;            ///< the other value
  unsigned char host8[4];  ///< the host\'s
};
static_assert(sizeof(ArticulationAssignment) == 12 && offsetof(ArticulationAssignment, second) == 6);

// clang-format off
template <> struct RecordType<InstrumentDefinition> : Stored<FourCharacterTag("SOIS"), OtherKey> {};  // instrument
template <> struct RecordType<EDTInstrumentUsed> : Stored<FourCharacterTag("SOIu"), OtherKey> {};  // staff list, slot - 1
template <> struct RecordType<EDTStaffSystemSpec2005> : Stored<FourCharacterTag("SOSS"), OtherKey> {};  // staff system
template <> struct RecordType<EDTGroupSpec> : Stored<FourCharacterTag("SDNG"), DetailKey> {};  // staff list, group
template <> struct RecordType<EDTMeasureSpec2014> : Stored<FourCharacterTag("SOMS"), OtherKey> {};  // measure
template <> struct RecordType<EDTScoreExpression2009> : Stored<FourCharacterTag("SODY"), OtherKey, 0x0E000000> {};  // measure, place
template <> struct RecordType<EDTStaffSpec2014> : Stored<FourCharacterTag("SOSC"), PointKey> {};  // staff, measure, position
template <> struct RecordType<EDTEntry> : Stored<FourCharacterTag("eteE"), EntryKey> {};  // entry
template <> struct RecordType<EDTAccidentalMods2012> : Stored<0x45024168, EntryDetailKey> {};  // entry, place
template <> struct RecordType<EDTSecBeamBreak> : Stored<FourCharacterTag("edsB"), EntryDetailKey> {};  // entry, place
template <> struct RecordType<EDTTuplet2005> : Stored<0x45035450, EntryDetailKey> {};  // first entry, place
template <> struct RecordType<ArticulationAssignment> : Stored<FourCharacterTag("edIM"), EntryDetailKey> {};  // entry, place
template <> struct RecordType<EDTArticulationDefinition2012> : Stored<0x4F044958, OtherKey> {};  // definition
template <> struct RecordType<EDTChordSuffix2012> : Stored<FourCharacterTag("SOIV"), OtherKey> {};  // suffix, place
template <> struct RecordType<EDTEnclosure> : Stored<FourCharacterTag("otDe"), OtherKey> {};  // enclosure
template <> struct RecordType<EDTSeparatePlacement> : Stored<FourCharacterTag("otDI"), OtherKey> {};  // what is placed, place
template <> struct RecordType<EDTTextBlock2004> : Stored<FourCharacterTag("SOTX"), OtherKey> {};  // text block
template <> struct RecordType<EDTPageText> : Stored<0x4F027054, OtherKey> {};  // page text, place
template <> struct RecordType<EDTMeasureText> : Stored<FourCharacterTag("dtmt"), DetailKey> {};  // the measure and the staff, place
template <> struct RecordType<EDTCenterShape> : Stored<0x44034378, DetailKey> {};  // smart shape, centre shape
template <> struct RecordType<EDTSmartShapeMeasMark> : Stored<FourCharacterTag("otMx"), OtherKey> {};  // measure, place
template <> struct RecordType<EDTSmartShapeEntMark> : Stored<FourCharacterTag("edEx"), EntryDetailKey> {};  // entry, place
// clang-format on

}  // namespace edk
