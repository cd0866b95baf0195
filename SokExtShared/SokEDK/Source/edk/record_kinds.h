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
template <> struct RecordType<InstrumentDefinition> : Stored<0x534F4953, OtherKey> {};            // 'SOIS': instrument
template <> struct RecordType<EDTInstrumentUsed> : Stored<0x534F4975, OtherKey> {};               // 'SOIu': staff list, slot - 1
template <> struct RecordType<EDTStaffSystemSpec2005> : Stored<0x534F5353, OtherKey> {};          // 'SOSS': staff system
template <> struct RecordType<EDTGroupSpec> : Stored<0x53444E47, DetailKey> {};                   // 'SDNG': staff list, group
template <> struct RecordType<EDTMeasureSpec2014> : Stored<0x534F4D53, OtherKey> {};              // 'SOMS': measure
template <> struct RecordType<EDTScoreExpression2009> : Stored<0x534F4459, OtherKey, 0x0E000000> {};  // 'SODY': measure, place
template <> struct RecordType<EDTStaffSpec2014> : Stored<0x534F5343, PointKey> {};                // 'SOSC': staff, measure, position
template <> struct RecordType<EDTEntry> : Stored<0x65746545, EntryKey> {};                        // 'eteE': entry
template <> struct RecordType<EDTAccidentalMods2012> : Stored<0x45024168, EntryDetailKey> {};     // entry, place
template <> struct RecordType<EDTSecBeamBreak> : Stored<0x65647342, EntryDetailKey> {};           // 'edsB': entry, place
template <> struct RecordType<EDTTuplet2005> : Stored<0x45035450, EntryDetailKey> {};             // first entry, place
template <> struct RecordType<ArticulationAssignment> : Stored<0x6564494D, EntryDetailKey> {};    // 'edIM': entry, place
template <> struct RecordType<EDTArticulationDefinition2012> : Stored<0x4F044958, OtherKey> {};   // definition
template <> struct RecordType<EDTChordSuffix2012> : Stored<0x534F4956, OtherKey> {};              // 'SOIV': suffix, place
template <> struct RecordType<EDTEnclosure> : Stored<0x6F744465, OtherKey> {};                    // 'otDe': enclosure
template <> struct RecordType<EDTSeparatePlacement> : Stored<0x6F744449, OtherKey> {};            // 'otDI': what is placed, place
template <> struct RecordType<EDTTextBlock2004> : Stored<0x534F5458, OtherKey> {};                // 'SOTX': text block
template <> struct RecordType<EDTPageText> : Stored<0x4F027054, OtherKey> {};                     // page text, place
template <> struct RecordType<EDTMeasureText> : Stored<0x64746D74, DetailKey> {};                 // 'dtmt': the measure and the staff, place
template <> struct RecordType<EDTCenterShape> : Stored<0x44034378, DetailKey> {};                 // smart shape, centre shape
template <> struct RecordType<EDTSmartShapeMeasMark> : Stored<0x6F744D78, OtherKey> {};           // 'otMx': measure, place
template <> struct RecordType<EDTSmartShapeEntMark> : Stored<0x65644578, EntryDetailKey> {};      // 'edEx': entry, place
// clang-format on

}  // namespace edk
