// A document's data records: byte blocks found by a tag and a key, ordered by tag, then key.
//
// The tag decides which fields of EDataID are read. Numbers are ordered unsigned, subIndex, instance and entry numbers
// signed. Results are those of the host interface: false (0 there) for failure, and nothing has changed then.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <vector>

#include "SokExtShared/SokEDK/Source/host_types.h"

namespace sok {

enum class KeyView { kOther, kDetail, kDetailExtra, kEntryDetail, kEntry, kGlobal };

// The view of EDataID that records of a tag use; kOther for unknown families.
KeyView ViewOf(unsigned int tag);

// Keys of one tag as numbers that sort in key order: the upper half holds the number or numbers, the lower the
// subIndex (or extraValue).
using PackedKey = std::uint64_t;
PackedKey PackKey(KeyView view, const EDataID& id);
void UnpackKey(KeyView view, PackedKey key, EDataID& id);  // sets the fields of the view only

class RecordStore {
 public:
  using Bytes = std::vector<unsigned char>;

  // `*size` holds the buffer's capacity on entry and receives the record's size; as much as fits is copied. A null
  // buffer asks for the size only. A buffer without a size, or with a negative one, is refused.
  bool Load(unsigned int tag, const EDataID& id, void* buffer, int* size) const;

  // Replaces the record, or adds it when there is none. A negative size, or bytes that are missing, are refused.
  bool Save(unsigned int tag, const EDataID& id, const void* buffer, int size);

  // Adds a record. 0xFFFF in cmper, secondCmper, subIndex or instance (never in an entry number) takes one more than
  // the highest in use (numbers start at 1, subIndex and instance at 0), or a gap when there is none above; the key is
  // written back. Refused when the key is taken.
  bool Create(unsigned int tag, EDataID& id, const void* buffer, int size);

  // Removes a record; later records under the same number or numbers move down by one subIndex.
  bool Delete(unsigned int tag, const EDataID& id);

  // Step the key to the nearest record before or after it, whether or not the key itself has one, and copy as much of
  // the record as fits into `size` bytes (a null buffer: nothing). False, and the key as it was, when there is none.
  bool Previous(unsigned int tag, EDataID& id, void* buffer, int size) const;
  bool Next(unsigned int tag, EDataID& id, void* buffer, int size) const;

  // Calls `visit` for every record in order of tag and key.
  using Visitor = std::function<void(unsigned int tag, const EDataID& id, std::span<const unsigned char> bytes)>;
  void ForEach(const Visitor& visit) const;

  bool operator==(const RecordStore&) const = default;

 private:
  using Table = std::map<PackedKey, Bytes>;

  const Table* Find(unsigned int tag) const;

  std::map<unsigned int, Table> tables_;
};

}  // namespace sok
