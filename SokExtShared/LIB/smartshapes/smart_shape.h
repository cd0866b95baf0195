/// @file
/// Smart shapes: slurs, hairpins, brackets and other signs that span a stretch of music.
///
/// The host keeps a shape as one shape record and the marks that tie it to the music: a measure mark in its first and
/// in its last measure, a centre shape with a measure mark of its own in every measure between, and an entry mark on
/// its first and its last entry when it is attached to entries. Functions named …Only touch the shape record alone.
///
/// Results are true when the host call answered non-zero. Record calls use `ot_smartshape` and `sizeofsmartshape`. Not
/// thread-safe.
#pragma once

#include <cstddef>

#include "SokExtShared/SokEDK/Source/host_types.h"

/// Bit of EDTSmartShapeNative::flags: the shape is attached to entries.
inline constexpr unsigned int kSmartShapeOnEntries = 0x40000000;

#pragma pack(push, 2)

/// The bare shape record. Bytes named for their place are the host's and are carried along unchanged.
struct EDTSmartShapeNative {
  unsigned char host0[2];     ///< the host's
  unsigned int flags;         ///< kSmartShape… bits
  unsigned short startStaff;  ///< an instrument number
  short startMeasure;         ///< from 1
  int startEntry;             ///< an entry number; of shapes on entries
  unsigned char host14[22];   ///< the host's
  unsigned short endStaff;    ///< an instrument number
  short endMeasure;           ///< inclusive
  int endEntry;               ///< an entry number; of shapes on entries
  unsigned char host44[48];   ///< the host's

  /// Turns the record from the plug-in's word order into that of hosts before version 0x0B000000 (SokVersion), or back:
  /// the halves of `flags` change places, and an entry number n becomes n * 65536 + n / 65536 in 32 bits, the division
  /// rounding toward zero. For newer hosts it does nothing. Until the host's version call the host counts as old.
  void SwapWords();
};

/// A shape record with its operations. Objects hold the plug-in's word order; only the host's calls see the other.
struct EDTSmartShape : EDTSmartShapeNative {
  /// Loads a shape. After a failure too the object is converted: it then holds what it held, in the other order.
  bool Load(unsigned short number);

  /// Loads the shape that follows `number` and writes its number back, whatever the result. Converts as Load does.
  bool Next(unsigned short& number);

  /// Saves the shape record alone.
  bool SaveShapeOnly(unsigned short number);

  /// Adds the object as a new shape. `number` is output only: the host's number, 0xFFFF when it chose none. It may be a
  /// field of the object, which then goes to the host as 0xFFFF.
  bool CreateShapeOnly(unsigned short& number);

  /// Save or create the shape and then, whatever came of that, its marks and centre shapes. A save erases no older
  /// ones. Return the result of the save or create.
  ///@{
  bool FullSave(unsigned short number);
  bool FullCreate(unsigned short& number);
  ///@}

  /// Deletes the shape record alone.
  static bool EraseShapeOnly(unsigned short number);

  /// Deletes the shape record, then its marks and centre shapes. The object must hold that shape: its own measures,
  /// flags and entries tell where the marks are. Returns the result of the first delete.
  bool FullErase(unsigned short number) const;

  /// Create and erase the marks and centre shapes of shape `number`, in rising order of measures from the object's
  /// first to its last, then on its start and end entry. Failures go unreported.
  ///@{
  void CreateCenterShapesAndMarkers(unsigned short number) const;
  void EraseCenterShapesAndMarkers(unsigned short number) const;
  ///@}

  /// Copies the shapes that have a mark in the source's measures, are not on entries, and start on one of the source's
  /// staves. A copy stands as many measures and slots from the target's start as its original from the source's; both
  /// its ends go to one staff. The smaller of the two regions decides how many measures are looked at. Shapes whose
  /// copy would start below the target's last slot, or on a slot without a staff, are left out. A shape with several
  /// marks is copied once; copies are not copied again where the regions overlap. Positions within the measures, and
  /// the two numbers, do not matter.
  static void CopyMeasureShapes(EREGION source, EREGION target, short, short);
};

#pragma pack(pop)

static_assert(sizeof(EDTSmartShapeNative) == 92 && sizeof(EDTSmartShape) == 92, "EDTSmartShape size");
static_assert(offsetof(EDTSmartShapeNative, host0) == 0, "EDTSmartShape::host0");
static_assert(offsetof(EDTSmartShapeNative, flags) == 2, "EDTSmartShape::flags");
static_assert(offsetof(EDTSmartShapeNative, startStaff) == 6, "EDTSmartShape::startStaff");
static_assert(offsetof(EDTSmartShapeNative, startMeasure) == 8, "EDTSmartShape::startMeasure");
static_assert(offsetof(EDTSmartShapeNative, startEntry) == 10, "EDTSmartShape::startEntry");
static_assert(offsetof(EDTSmartShapeNative, host14) == 14, "EDTSmartShape::host14");
static_assert(offsetof(EDTSmartShapeNative, endStaff) == 36, "EDTSmartShape::endStaff");
static_assert(offsetof(EDTSmartShapeNative, endMeasure) == 38, "EDTSmartShape::endMeasure");
static_assert(offsetof(EDTSmartShapeNative, endEntry) == 40, "EDTSmartShape::endEntry");
static_assert(offsetof(EDTSmartShapeNative, host44) == 44, "EDTSmartShape::host44");
