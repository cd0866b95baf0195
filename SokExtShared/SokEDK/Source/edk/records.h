/// @file
/// Records by their type: load, save, create, delete, and loops.
///
///     if (const auto name = edk::Load<edk::InstrumentDefinition>({instrument})) …
///     for (const auto& [key, mark] : edk::RecordsOf<EDTSmartShapeMeasMark>({measure})) …
///
/// A record type names its tag and the view of its key in a RecordType; those of the kit's records stand in
/// record_kinds.h, and one more line makes an extension's own struct a record. Every function makes the one call of the
/// host that it names, with the record's size and the interface version; key fields that a type has no use for are 0.
#pragma once

#include <iterator>
#include <optional>

#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

namespace edk {

/// In a create: a number that the host finds free.
inline constexpr int kHostChooses = EDataID::kHostChooses;

// The views of a key, as plain numbers; each is cut to the width of its field.

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

/// What a record is to the host. Derive the RecordType of a struct of your own from this one:
///     template <> struct edk::RecordType<MyRecord> : edk::Stored<FourCharacterTag("otMy"), edk::OtherKey> {};
template <unsigned int kTheTag, typename TheKey, unsigned int kTheVersion = kInterfaceVersion>
struct Stored {
  static constexpr unsigned int kTag = kTheTag;
  static constexpr unsigned int kVersion = kTheVersion;  ///< of the interface, which decides the record's layout
  using Key = TheKey;
};
template <typename Record>
struct RecordType;
/// The key of a record type.
template <typename Record>
using KeyOf = typename RecordType<Record>::Key;

/// The record under a key (SX_LoadEData), or nothing.
template <typename Record>
std::optional<Record> Load(const KeyOf<Record>& key) {
  std::optional<Record> record(std::in_place);
  const EDataID id = key.Id();
  int size = sizeof(Record);
  if (SX_LoadEData(RecordType<Record>::kTag, &id, &*record, &size, RecordType<Record>::kVersion) == 0) record.reset();
  return record;
}

/// The record under a key, all zero where the host writes nothing.
template <typename Record>
Record LoadOrZero(const KeyOf<Record>& key) {
  Record record{};
  const EDataID id = key.Id();
  int size = sizeof(Record);
  SX_LoadEData(RecordType<Record>::kTag, &id, &record, &size, RecordType<Record>::kVersion);
  return record;
}

/// Stores the record under a key (SX_SaveEData); false when the host refuses it.
template <typename Record>
bool Save(const KeyOf<Record>& key, const Record& record) {
  const EDataID id = key.Id();
  return SX_SaveEData(RecordType<Record>::kTag, &id, &record, sizeof(Record), RecordType<Record>::kVersion) != 0;
}

/// Adds a record (SX_CreateEData). Returns its key, in which the host has put the numbers that it chose, or nothing.
template <typename Record>
std::optional<KeyOf<Record>> Create(const KeyOf<Record>& key, const Record& record) {
  EDataID id = key.Id();
  if (SX_CreateEData(RecordType<Record>::kTag, &id, &record, sizeof(Record), RecordType<Record>::kVersion) == 0) {
    return std::nullopt;
  }
  return KeyOf<Record>::Of(id);
}

/// Removes the record under a key (SX_DeleteEData); later ones under the same number move down by one place.
template <typename Record>
bool Delete(const KeyOf<Record>& key) {
  const EDataID id = key.Id();
  return SX_DeleteEData(RecordType<Record>::kTag, &id, RecordType<Record>::kVersion) != 0;
}

/// A record with its key.
template <typename Record>
struct Keyed {
  KeyOf<Record> key;  ///< where it is
  Record record;      ///< what it holds
};

/// Loops over records; `Step` finds the first one and the next.
template <typename Record, typename Step>
class RecordLoop {
 public:
  class Iterator {
   public:
    using value_type = Keyed<Record>;
    using difference_type = std::ptrdiff_t;
    explicit Iterator(const KeyOf<Record>& first) : at_(Step::First(first)) {}
    const Keyed<Record>& operator*() const { return *at_; }
    Iterator& operator++() {
      at_ = Step::Next(at_->key);
      return *this;
    }
    void operator++(int) { ++*this; }
    bool operator==(std::default_sentinel_t) const { return !at_; }

   private:
    std::optional<Keyed<Record>> at_;
  };

  /// From this key on.
  explicit RecordLoop(const KeyOf<Record>& first) : first_(first) {}

  /// For range-based loops.
  ///@{
  Iterator begin() const { return Iterator(first_); }
  std::default_sentinel_t end() const { return {}; }
  ///@}

 private:
  KeyOf<Record> first_;
};

// The first key there can be, then SX_NextEData.
template <typename Record>
struct InKeyOrder {
  static std::optional<Keyed<Record>> First(const KeyOf<Record>& key) {
    if (const auto record = Load<Record>(key)) return Keyed<Record>{key, *record};
    return Next(key);
  }
  static std::optional<Keyed<Record>> Next(const KeyOf<Record>& key) {
    std::optional<Keyed<Record>> next(std::in_place);
    EDataID id = key.Id();
    const short found =
        SX_NextEData(RecordType<Record>::kTag, &id, &next->record, sizeof(Record), RecordType<Record>::kVersion);
    next->key = KeyOf<Record>::Of(id);
    if (found == 0 || next->key == key) next.reset();  // a host that stays where it is has no next one
    return next;
  }
};
/// Every record of a type in the order of its keys.
template <typename Record>
RecordLoop<Record, InKeyOrder<Record>> EachRecord() {
  return RecordLoop<Record, InKeyOrder<Record>>(KeyOf<Record>{});
}

// Places one after the other.
template <typename Record>
struct InPlaceOrder {
  static std::optional<Keyed<Record>> First(const KeyOf<Record>& key) {
    const auto record = Load<Record>(key);
    return record ? std::optional(Keyed<Record>{key, *record}) : std::nullopt;
  }
  static std::optional<Keyed<Record>> Next(KeyOf<Record> key) {
    if (++key.subIndex > 0x7FFF) return std::nullopt;
    return First(key);
  }
};
/// The records under one number or entry, from the key's `subIndex` on until one does not load. Do not delete in the
/// loop: later ones move down.
template <typename Record>
RecordLoop<Record, InPlaceOrder<Record>> RecordsOf(const KeyOf<Record>& first) {
  return RecordLoop<Record, InPlaceOrder<Record>>(first);
}

}  // namespace edk
