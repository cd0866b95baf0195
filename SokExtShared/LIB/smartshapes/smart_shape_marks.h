/// @file
/// The marks that tie smart shapes to the measures and the entries that they touch.
///
/// The marks of one measure or entry are numbered by `subIndex` from 0 without gaps; the host moves later ones down
/// when one is deleted. Results are true when the host call answered non-zero; keys by reference are written back
/// whatever the result.
#pragma once

#include <cstddef>

#pragma pack(push, 2)

/// The mark in a measure. Tag kSmartShapeMeasureMark.
struct EDTSmartShapeMeasMark {
  unsigned short shape;        ///< its number
  unsigned short centerShape;  ///< 0 in the shape's first and last measure
  unsigned char host4[8];      ///< the host's

  /// The mark at a place; a create puts it behind the others when `subIndex` is -1.
  ///@{
  bool Load(short measure, short subIndex);
  bool Save(short measure, short subIndex) const;
  bool Create(unsigned short measure, short& subIndex) const;
  ///@}

  /// Loads the mark after (measure, subIndex), which may be another measure's: only `subIndex` is written back.
  bool Next(unsigned short measure, short& subIndex);

  /// Deletes a mark.
  static bool EraseMarkOnly(short measure, short subIndex);

  /// Erase every mark of a shape in a measure; the second form also the centre shapes that they name, each before its
  /// mark. A mark that the host refuses to delete is passed over. Always true, also when there is none.
  ///@{
  static bool FindAndEraseMarkOnly(short measure, unsigned short shape);
  static bool FindAndEraseWithCenterShapes(short measure, unsigned short shape);
  ///@}
};

/// The mark on an entry. Tag kSmartShapeEntryMark.
struct EDTSmartShapeEntMark {
  unsigned short shape;    ///< its number
  unsigned char host2[8];  ///< the host's

  /// The mark at a place; a create puts it behind the others when `subIndex` is -1.
  ///@{
  bool Load(int entry, short subIndex);
  bool Save(int entry, short subIndex) const;
  bool Create(int entry, short& subIndex) const;
  ///@}

  /// Loads the mark after (entry, subIndex) and writes both back.
  bool Next(int& entry, short& subIndex);

  /// Deletes a mark.
  static bool Erase(int entry, short subIndex);

  /// Erases every mark of a shape on an entry, as EDTSmartShapeMeasMark::FindAndEraseMarkOnly does.
  static bool FindAndErase(int entry, unsigned short shape);
};

#pragma pack(pop)

static_assert(sizeof(EDTSmartShapeMeasMark) == 12, "EDTSmartShapeMeasMark size");
static_assert(offsetof(EDTSmartShapeMeasMark, centerShape) == 2, "EDTSmartShapeMeasMark::centerShape");
static_assert(offsetof(EDTSmartShapeMeasMark, host4) == 4, "EDTSmartShapeMeasMark::host4");
static_assert(sizeof(EDTSmartShapeEntMark) == 10, "EDTSmartShapeEntMark size");
static_assert(offsetof(EDTSmartShapeEntMark, host2) == 2, "EDTSmartShapeEntMark::host2");
