#include "host/engine/record_store.h"

#include <algorithm>
#include <cstring>

#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace sok {

namespace {

constexpr std::uint64_t kChosenNumber = EDataID::kHostChooses;

// Signed fields sort as unsigned ones once their sign bit is flipped.
constexpr std::uint64_t Biased(short value) { return static_cast<unsigned short>(value) ^ 0x8000u; }
constexpr std::uint64_t Biased(int value) { return static_cast<unsigned int>(value) ^ 0x80000000u; }
constexpr short UnbiasedShort(std::uint64_t bits) { return static_cast<short>((bits & 0xFFFF) ^ 0x8000u); }
constexpr int UnbiasedInt(std::uint64_t bits) {
  return static_cast<int>(static_cast<unsigned int>(bits & 0xFFFFFFFF) ^ 0x80000000u);
}

constexpr int kWord = 16;
constexpr int kHalf = 32;
constexpr PackedKey kHalfMask = 0xFFFFFFFF;

// A 16-bit field of a packed key that a create may choose: its place, and the bits of the first and last value given.
struct ChosenField {
  int shift;
  std::uint64_t request;  // the field's bits that ask for a choice
  std::uint64_t first;
  std::uint64_t last;
};
constexpr std::uint64_t kFirstSubIndex = 0x8000;    // 0, biased
constexpr std::uint64_t kRequestSubIndex = 0x7FFF;  // -1, biased
constexpr std::uint64_t kLastNumber = EDataID::kDocument - 1;

constexpr ChosenField NumberAt(int shift) { return {shift, kChosenNumber, 1, kLastNumber}; }
constexpr ChosenField SubIndexAt(int shift) { return {shift, kRequestSubIndex, kFirstSubIndex, 0xFFFF}; }

// The fields of a view that a create may choose, the most significant first.
std::span<const ChosenField> ChosenFields(KeyView view) {
  static constexpr ChosenField other[] = {NumberAt(kHalf), SubIndexAt(0)};
  static constexpr ChosenField detail[] = {NumberAt(kHalf + kWord), NumberAt(kHalf), SubIndexAt(0)};
  static constexpr ChosenField entry_detail[] = {SubIndexAt(0)};
  static constexpr ChosenField global[] = {SubIndexAt(kHalf)};
  switch (view) {
    case KeyView::kOther:
      return other;
    case KeyView::kDetail:
      return detail;
    case KeyView::kDetailExtra:
      return std::span(detail).first(2);
    case KeyView::kEntryDetail:
      return entry_detail;
    case KeyView::kGlobal:
      return global;
    case KeyView::kEntry:
      break;
  }
  return {};
}

// Puts a free value into one field of `key`, among the records that agree with it in the fields above. Fields below
// count as part of the number that is in use. False when every value is taken.
bool ChooseField(const std::map<PackedKey, RecordStore::Bytes>& table, const ChosenField& field, PackedKey& key) {
  const PackedKey unit = PackedKey{1} << field.shift;
  const PackedKey above = key & ~(unit * 0x10000 - 1);
  const PackedKey first = above + field.first * unit;
  const PackedKey end = above + field.last * unit + (unit - 1);  // the last key that has the last value
  const auto value_of = [&](PackedKey used) { return (used - above) / unit; };
  std::uint64_t value = field.first;
  auto at = table.upper_bound(end);
  if (at != table.begin() && std::prev(at)->first >= first) value = value_of(std::prev(at)->first) + 1;
  if (value > field.last) {
    value = field.first;
    for (at = table.lower_bound(first); at != table.end() && at->first <= end && value_of(at->first) <= value; ++at) {
      value = value_of(at->first) + 1;
    }
    if (value > field.last) return false;
  }
  key = above + value * unit + (key & (unit - 1));
  return true;
}

RecordStore::Bytes Copy(const void* buffer, int size) {
  const auto* const bytes = static_cast<const unsigned char*>(buffer);
  return size == 0 ? RecordStore::Bytes() : RecordStore::Bytes(bytes, bytes + size);
}

bool Readable(const void* buffer, int size) { return size >= 0 && (buffer != nullptr || size == 0); }

void CopyOut(const RecordStore::Bytes& record, void* buffer, int size) {
  if (buffer == nullptr || size <= 0 || record.empty()) return;
  std::memcpy(buffer, record.data(), std::min(static_cast<std::size_t>(size), record.size()));
}

}  // namespace

KeyView ViewOf(unsigned int tag) {
  if (tag == record_tags::kStaffInForce) return KeyView::kDetailExtra;
  switch (tag >> 16) {
    case 0x7066:
      return KeyView::kGlobal;  // 'pf'
    case 0x5344:
      return KeyView::kDetail;  // 'SD'
    case 0x6474:
      return KeyView::kDetail;  // 'dt'
    case 0x6564:
      return KeyView::kEntryDetail;  // 'ed'
    case 0x6574:
      return KeyView::kEntry;  // 'et'
    default:
      break;
  }
  const bool numbered = ((tag >> 16) & 0xFF) < 0x20;  // a letter followed by a small number
  if (numbered && tag >> 24 == 'D') return KeyView::kDetail;
  if (numbered && tag >> 24 == 'E') return KeyView::kEntryDetail;
  return KeyView::kOther;
}

PackedKey PackKey(KeyView view, const EDataID& id) {
  const auto numbers = [&] {
    return PackedKey{id.detail.cmper} << (kHalf + kWord) | PackedKey{id.detail.secondCmper} << kHalf;
  };
  switch (view) {
    case KeyView::kOther:
      return PackedKey{id.other.cmper} << kHalf | Biased(id.other.subIndex);
    case KeyView::kDetail:
      return numbers() | Biased(id.detail.subIndex);
    case KeyView::kDetailExtra:
      return numbers() | Biased(id.detail.extraValue);
    case KeyView::kEntryDetail:
      return Biased(id.entryDetail.entryNum) << kHalf | Biased(id.entryDetail.subIndex);
    case KeyView::kEntry:
      return Biased(id.entry.entryNum) << kHalf;
    case KeyView::kGlobal:
      return Biased(id.global.instance) << kHalf;
  }
  return 0;
}

void UnpackKey(KeyView view, PackedKey key, EDataID& id) {
  switch (view) {
    case KeyView::kOther:
      id.other.cmper = static_cast<unsigned short>(key >> kHalf);
      id.other.subIndex = UnbiasedShort(key);
      break;
    case KeyView::kDetail:
    case KeyView::kDetailExtra:
      id.detail.cmper = static_cast<unsigned short>(key >> (kHalf + kWord));
      id.detail.secondCmper = static_cast<unsigned short>(key >> kHalf);
      if (view == KeyView::kDetail) {
        id.detail.subIndex = UnbiasedShort(key);
      } else {
        id.detail.extraValue = UnbiasedInt(key);
      }
      break;
    case KeyView::kEntryDetail:
      id.entryDetail.entryNum = UnbiasedInt(key >> kHalf);
      id.entryDetail.subIndex = UnbiasedShort(key);
      break;
    case KeyView::kEntry:
      id.entry.entryNum = UnbiasedInt(key >> kHalf);
      break;
    case KeyView::kGlobal:
      id.global.instance = UnbiasedShort(key >> kHalf);
      break;
  }
}

const RecordStore::Table* RecordStore::Find(unsigned int tag) const {
  const auto table = tables_.find(tag);
  return table == tables_.end() ? nullptr : &table->second;
}

bool RecordStore::Load(unsigned int tag, const EDataID& id, void* buffer, int* size) const {
  if (buffer != nullptr && (size == nullptr || *size < 0)) return false;
  const Table* const table = Find(tag);
  if (table == nullptr) return false;
  const auto record = table->find(PackKey(ViewOf(tag), id));
  if (record == table->end()) return false;
  if (buffer != nullptr) CopyOut(record->second, buffer, *size);
  if (size != nullptr) *size = static_cast<int>(record->second.size());
  return true;
}

bool RecordStore::Save(unsigned int tag, const EDataID& id, const void* buffer, int size) {
  if (!Readable(buffer, size)) return false;
  tables_[tag][PackKey(ViewOf(tag), id)] = Copy(buffer, size);
  return true;
}

bool RecordStore::Create(unsigned int tag, EDataID& id, const void* buffer, int size) {
  if (!Readable(buffer, size)) return false;
  const KeyView view = ViewOf(tag);
  PackedKey key = PackKey(view, id);
  static const Table none;
  const Table* const found = Find(tag);
  const Table& table = found != nullptr ? *found : none;
  for (const ChosenField& field : ChosenFields(view)) {
    if ((key >> field.shift & 0xFFFF) == field.request && !ChooseField(table, field, key)) return false;
  }
  if (table.contains(key)) return false;
  tables_[tag].emplace(key, Copy(buffer, size));
  UnpackKey(view, key, id);
  return true;
}

bool RecordStore::Delete(unsigned int tag, const EDataID& id) {
  const auto table = tables_.find(tag);
  if (table == tables_.end()) return false;
  Table& records = table->second;
  const PackedKey key = PackKey(ViewOf(tag), id);
  const auto record = records.find(key);
  if (record == records.end()) return false;
  const PackedKey last = key | kHalfMask;
  for (auto at = records.erase(record); at != records.end() && at->first <= last;) {
    auto moving = records.extract(at++);
    --moving.key();
    records.insert(at, std::move(moving));
  }
  if (records.empty()) tables_.erase(table);
  return true;
}

bool RecordStore::Previous(unsigned int tag, EDataID& id, void* buffer, int size) const {
  const Table* const table = Find(tag);
  if (table == nullptr) return false;
  const KeyView view = ViewOf(tag);
  const auto after = table->lower_bound(PackKey(view, id));
  if (after == table->begin()) return false;
  const auto& [key, record] = *std::prev(after);
  UnpackKey(view, key, id);
  CopyOut(record, buffer, size);
  return true;
}

bool RecordStore::Next(unsigned int tag, EDataID& id, void* buffer, int size) const {
  const Table* const table = Find(tag);
  if (table == nullptr) return false;
  const KeyView view = ViewOf(tag);
  const auto next = table->upper_bound(PackKey(view, id));
  if (next == table->end()) return false;
  UnpackKey(view, next->first, id);
  CopyOut(next->second, buffer, size);
  return true;
}

void RecordStore::ForEach(const Visitor& visit) const {
  for (const auto& [tag, table] : tables_) {
    const KeyView view = ViewOf(tag);
    for (const auto& [key, record] : table) {
      EDataID id = {};
      UnpackKey(view, key, id);
      visit(tag, id, record);
    }
  }
}

}  // namespace sok
