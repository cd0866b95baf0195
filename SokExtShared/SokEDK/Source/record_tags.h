/// @file
/// The tags of the data records that the kit and the workbench know, each with the view of EDataID that is its key and
/// what stands in the key. The formats of the records are in record_formats.h.
///
/// A place is a subIndex from 0 on. The third and fourth characters of some tags are letters behind a small number.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

/// The tags by the names of what their records are.
namespace record_tags {

/// `other`.
///@{
inline constexpr unsigned int kArticulationDefinition = FourCharacterTag("O\4IX");  ///< definition, 0
inline constexpr unsigned int kChordSuffix = FourCharacterTag("SOIV");              ///< suffix, place
inline constexpr unsigned int kEnclosure = FourCharacterTag("otDe");                ///< enclosure, 0
inline constexpr unsigned int kFretInstrument = FourCharacterTag("O\25fI");         ///< fret instrument, 0
inline constexpr unsigned int kInstrument = FourCharacterTag("SOIS");               ///< instrument, 0
inline constexpr unsigned int kInstrumentUsed = FourCharacterTag("SOIu");           ///< staff list, slot - 1
inline constexpr unsigned int kMeasure = FourCharacterTag("SOMS");                  ///< measure, 0
inline constexpr unsigned int kPageText = FourCharacterTag("O\2pT");                ///< page text, place
inline constexpr unsigned int kRawText = FourCharacterTag("txbl");                ///< raw text of the ordinary kind, 0
inline constexpr unsigned int kScoreExpression = FourCharacterTag("SODY");        ///< measure, place
inline constexpr unsigned int kSeparatePlacement = FourCharacterTag("otDI");      ///< what is placed, place
inline constexpr unsigned int kSmartShape = FourCharacterTag("O\10Sx");           ///< smart shape, 0
inline constexpr unsigned int kSmartShapeOf2003 = FourCharacterTag("O\7Sx");      ///< the same, for hosts up to 2003
inline constexpr unsigned int kSmartShapeMeasureMark = FourCharacterTag("otMx");  ///< measure, place
inline constexpr unsigned int kStaffListName = FourCharacterTag("osDc");          ///< staff list, 0
inline constexpr unsigned int kStaffSystem = FourCharacterTag("SOSS");            ///< staff system, 0
inline constexpr unsigned int kTextBlock = FourCharacterTag("SOTX");              ///< text block, 0
inline constexpr unsigned int kTextExpression = FourCharacterTag("SODT");         ///< text expression, 0
inline constexpr unsigned int kTextRepeat = FourCharacterTag("SORS");             ///< text repeat, 0
inline constexpr unsigned int kTextRepeatText = FourCharacterTag("osRT");         ///< text repeat, 0
///@}

/// `other`: raw text, 0. Two characters of the kind of text in the low 16 bits, as a text block names it.
inline constexpr unsigned int kRawTexts = FourCharacterTag("tx\0\0");

/// `other`: staff list, place. The four instrument lists of a staff list, in the order of their bits in masks
/// (instrument_lists.h).
inline constexpr unsigned int kInstrumentList[] = {FourCharacterTag("otDC"), FourCharacterTag("otdc"),
                                                   FourCharacterTag("otIO"), FourCharacterTag("otio")};

/// `detail`.
///@{
inline constexpr unsigned int kCenterShape = FourCharacterTag("D\3Cx");  ///< smart shape, centre shape, 0
inline constexpr unsigned int kGroup = FourCharacterTag("SDNG");         ///< staff list, group, 0
inline constexpr unsigned int kMeasureText = FourCharacterTag("dtmt");  ///< measure, staff (in the host's order), place
///@}

/// `detail` with `extraValue`: staff, measure, position.
inline constexpr unsigned int kStaffInForce = FourCharacterTag("SOSC");

/// `entryDetail`.
///@{
inline constexpr unsigned int kAccidental = FourCharacterTag("E\2Ah");          ///< entry, place
inline constexpr unsigned int kArticulation = FourCharacterTag("edIM");         ///< entry, place
inline constexpr unsigned int kNotehead = FourCharacterTag("E\2cn");            ///< entry, place
inline constexpr unsigned int kSecondaryBeamBreak = FourCharacterTag("edsB");   ///< entry, 0
inline constexpr unsigned int kSmartShapeEntryMark = FourCharacterTag("edEx");  ///< entry, place
inline constexpr unsigned int kTuplet = FourCharacterTag("E\3TP");              ///< first entry, place
///@}

/// `entry`: the entry's number.
inline constexpr unsigned int kEntry = FourCharacterTag("eteE");

/// `global`: the layer, from 0.
inline constexpr unsigned int kLayerPreferences = FourCharacterTag("pfLA");

/// `global`: 0 for the score, 1 for its parts.
inline constexpr unsigned int kPageFormat = FourCharacterTag("pfPF");

}  // namespace record_tags
