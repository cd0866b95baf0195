/// @file
/// The records that are known: the tag and the view of the key of each. What a key's fields are stands in
/// record_tags.h, what a record's fields mean, where that is known, in record_formats.h.
#pragma once

#include "SokExtShared/LIB/smartshapes/center_shape.h"
#include "SokExtShared/LIB/smartshapes/smart_shape_marks.h"
#include "SokExtShared/SokEDK/Source/edk/records.h"
#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace edk {

/// An instrument: a staff's names and where its rests stand.
using InstrumentDefinition = EDTInstDefinition;

// clang-format off
template <> struct RecordType<InstrumentDefinition> : Stored<record_tags::kInstrument, OtherKey> {};
template <> struct RecordType<EDTInstrumentUsed> : Stored<record_tags::kInstrumentUsed, OtherKey> {};
template <> struct RecordType<EDTStaffSystemSpec2005> : Stored<record_tags::kStaffSystem, OtherKey> {};
template <> struct RecordType<EDTGroupSpec> : Stored<record_tags::kGroup, DetailKey> {};
template <> struct RecordType<EDTMeasureSpec2014> : Stored<record_tags::kMeasure, OtherKey> {};
template <> struct RecordType<EDTScoreExpression2009> : Stored<record_tags::kScoreExpression, OtherKey, EDTScoreExpression2009::kVersion> {};
template <> struct RecordType<EDTStaffSpec2014> : Stored<record_tags::kStaffInForce, PointKey> {};
template <> struct RecordType<EDTEntry> : Stored<record_tags::kEntry, EntryKey> {};
template <> struct RecordType<EDTAccidentalMods2012> : Stored<record_tags::kAccidental, EntryDetailKey> {};
template <> struct RecordType<EDTSecBeamBreak> : Stored<record_tags::kSecondaryBeamBreak, EntryDetailKey> {};
template <> struct RecordType<EDTTuplet2005> : Stored<record_tags::kTuplet, EntryDetailKey> {};
template <> struct RecordType<ArticulationAssignment> : Stored<record_tags::kArticulation, EntryDetailKey> {};
template <> struct RecordType<EDTArticulationDefinition2012> : Stored<record_tags::kArticulationDefinition, OtherKey> {};
template <> struct RecordType<EDTChordSuffix2012> : Stored<record_tags::kChordSuffix, OtherKey> {};
template <> struct RecordType<EDTEnclosure> : Stored<record_tags::kEnclosure, OtherKey> {};
template <> struct RecordType<EDTSeparatePlacement> : Stored<record_tags::kSeparatePlacement, OtherKey> {};
template <> struct RecordType<EDTTextBlock2004> : Stored<record_tags::kTextBlock, OtherKey> {};
template <> struct RecordType<EDTPageText> : Stored<record_tags::kPageText, OtherKey> {};
template <> struct RecordType<EDTMeasureText> : Stored<record_tags::kMeasureText, DetailKey> {};
template <> struct RecordType<EDTCenterShape> : Stored<record_tags::kCenterShape, DetailKey> {};
template <> struct RecordType<EDTSmartShapeMeasMark> : Stored<record_tags::kSmartShapeMeasureMark, OtherKey> {};
template <> struct RecordType<EDTSmartShapeEntMark> : Stored<record_tags::kSmartShapeEntryMark, EntryDetailKey> {};
// clang-format on

}  // namespace edk
