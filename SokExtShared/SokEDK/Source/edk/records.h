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

#include "SokExtShared/SokEDK/Source/record_keys.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/record_access.h"

namespace edk {

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
