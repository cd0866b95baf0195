/// @file
/// Centre shapes: the pieces of a smart shape in the measures between its first and its last.
///
/// Results are true when the host call answered non-zero; numbers by reference are written back whatever the result.
#pragma once

/// Tag kCenterShape. All its bytes are the host's.
struct EDTCenterShape {
  unsigned char host[22];  ///< the host's

  /// The record alone.
  ///@{
  bool Load(unsigned short shape, unsigned short center);
  bool Save(unsigned short shape, unsigned short center) const;
  ///@}

  /// Adds the record under `center` as passed in (0xFFFF: the host chooses); `center` receives the host's number.
  bool CreateShapeOnly(unsigned short shape, unsigned short& center) const;

  /// Deletes the record alone.
  static bool EraseShapeOnly(unsigned short shape, unsigned short center);

  /// Creates the centre shape, then, whatever came of that, the measure mark that names it in `measure`. Returns the
  /// mark's result.
  bool FullCreate(unsigned short measure, unsigned short shape, unsigned short& center) const;
};

static_assert(sizeof(EDTCenterShape) == 22, "EDTCenterShape size");
