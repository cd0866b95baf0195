/// @file
/// The views of a record's key as plain numbers. Each number is cut to the width of its field; fields that a view does
/// not name are 0.
#pragma once

#include "SokExtShared/SokEDK/Source/host_types.h"

namespace edk {

/// In a create: a number that the host finds free.
inline constexpr int kHostChooses = EDataID::kHostChooses;

/// `other`: a number, and the record's place among those under it, from 0.
struct OtherKey {
  int cmper = 0;     ///< the number
  int subIndex = 0;  ///< the place, from 0

  /// As the host's record calls take it, and back.
  ///@{
  EDataID Id() const {
    EDataID id{};
    id.other = {static_cast<unsigned short>(cmper), static_cast<short>(subIndex)};
    return id;
  }
  static OtherKey Of(const EDataID& id) { return {id.other.cmper, id.other.subIndex}; }
  ///@}

  /// Equal in every field.
  friend bool operator==(const OtherKey&, const OtherKey&) = default;
};

/// `detail`: two numbers and a place.
struct DetailKey {
  int cmper = 0;        ///< the first number
  int secondCmper = 0;  ///< the second number
  int subIndex = 0;     ///< the place, from 0

  /// As the host's record calls take it, and back.
  ///@{
  EDataID Id() const {
    EDataID id{};
    id.detail.cmper = static_cast<unsigned short>(cmper);
    id.detail.secondCmper = static_cast<unsigned short>(secondCmper);
    id.detail.subIndex = static_cast<short>(subIndex);
    return id;
  }
  static DetailKey Of(const EDataID& id) { return {id.detail.cmper, id.detail.secondCmper, id.detail.subIndex}; }
  ///@}

  /// Equal in every field.
  friend bool operator==(const DetailKey&, const DetailKey&) = default;
};

/// `detail` of the staff spec in force at a point.
struct PointKey {
  int cmper = 0;        ///< the staff
  int secondCmper = 0;  ///< the measure
  int extraValue = 0;   ///< the position in it

  /// As the host's record calls take it.
  EDataID Id() const {
    EDataID id{};
    id.detail.cmper = static_cast<unsigned short>(cmper);
    id.detail.secondCmper = static_cast<unsigned short>(secondCmper);
    id.detail.extraValue = extraValue;
    return id;
  }
};

/// `entryDetail`: an entry by its number, and a place.
struct EntryDetailKey {
  int entry = 0;     ///< the entry's number
  int subIndex = 0;  ///< the place, from 0

  /// As the host's record calls take it, and back.
  ///@{
  EDataID Id() const {
    EDataID id{};
    id.entryDetail.entryNum = entry;
    id.entryDetail.subIndex = static_cast<short>(subIndex);
    return id;
  }
  static EntryDetailKey Of(const EDataID& id) { return {id.entryDetail.entryNum, id.entryDetail.subIndex}; }
  ///@}

  /// Equal in every field.
  friend bool operator==(const EntryDetailKey&, const EntryDetailKey&) = default;
};

/// `entry`: an entry by its number.
struct EntryKey {
  int entry = 0;  ///< the entry's number

  /// As the host's record calls take it, and back.
  ///@{
  EDataID Id() const {
    EDataID id{};
    id.entry.entryNum = entry;
    return id;
  }
  static EntryKey Of(const EDataID& id) { return {id.entry.entryNum}; }
  ///@}

  /// Equal in every field.
  friend bool operator==(const EntryKey&, const EntryKey&) = default;
};

/// `global`: which one of a preference.
struct GlobalKey {
  int instance = 0;  ///< from 0 or 1, as the preference has it

  /// As the host's record calls take it.
  EDataID Id() const {
    EDataID id{};
    id.global.instance = static_cast<short>(instance);
    return id;
  }
};

}  // namespace edk
