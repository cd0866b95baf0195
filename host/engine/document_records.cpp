#include "host/engine/document_records.h"

#include <algorithm>
#include <cstring>

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_keys.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using record_tags::kEntry;
using record_tags::kInstrument;
using record_tags::kStaffInForce;

namespace sok {

namespace {

constexpr int kEntryRecordSize = sizeof(EDTEntry);
constexpr std::size_t kEntryNumberEnd = offsetof(EXENTRY, duration);
constexpr std::size_t kEntryViewEnd = offsetof(EXENTRY, notes) + 3 * sizeof(EXNOTE);

bool Changed(Document& document, bool done) {
  document.dirty = document.dirty || done;
  return done;
}

bool LoadEntry(const Document& document, int number, void* buffer, int* size) {
  const auto position = document.FindEntry(number);
  if (!position || (buffer != nullptr && (size == nullptr || *size < 0))) return false;
  if (buffer != nullptr) {
    const std::vector<EXENTRY> entries = document.Entries(position->place);
    unsigned char record[kEntryRecordSize] = {};
    const auto* const entry = reinterpret_cast<const unsigned char*>(entries.data() + position->index);
    std::copy(entry, entry + kEntryViewEnd, record);
    std::memcpy(buffer, record, static_cast<std::size_t>(std::min(*size, kEntryRecordSize)));
  }
  if (size != nullptr) *size = kEntryRecordSize;
  return true;
}

bool SaveEntry(Document& document, int number, const void* buffer, int size) {
  const auto position = document.FindEntry(number);
  if (!position || buffer == nullptr || size < static_cast<int>(kEntryViewEnd)) return false;
  std::vector<EXENTRY> entries = document.Entries(position->place);
  const auto* const record = static_cast<const unsigned char*>(buffer);
  std::copy(record + kEntryNumberEnd, record + kEntryViewEnd,
            reinterpret_cast<unsigned char*>(entries.data() + position->index) + kEntryNumberEnd);
  return document.SetEntries(position->place, std::move(entries));
}

bool StepEntry(const Document& document, EDataID& id, int step, void* buffer, int size) {
  const long last = document.LastEntryNumber();
  const long from = std::clamp<long>(id.entry.entryNum, 0, last + 1);
  for (long next = from + step; next >= 1 && next <= last; next += step) {
    const int number = static_cast<int>(next);
    if (!document.FindEntry(number)) continue;
    id.entry.entryNum = number;
    return LoadEntry(document, number, size < 0 ? nullptr : buffer, &size);
  }
  return false;
}

}  // namespace

bool LoadRecord(const Document& document, unsigned int tag, const EDataID& id, void* buffer, int* size) {
  if (tag == kEntry) return LoadEntry(document, id.entry.entryNum, buffer, size);
  if (tag != kStaffInForce) return document.records.Load(tag, id, buffer, size);
  return document.records.Load(kInstrument, edk::OtherKey{id.detail.cmper}.Id(), buffer, size);
}

bool SaveRecord(Document& document, unsigned int tag, const EDataID& id, const void* buffer, int size) {
  if (tag == kStaffInForce) return false;
  if (tag == kEntry) return Changed(document, SaveEntry(document, id.entry.entryNum, buffer, size));
  return Changed(document, document.records.Save(tag, id, buffer, size));
}

bool CreateRecord(Document& document, unsigned int tag, EDataID& id, const void* buffer, int size) {
  if (tag == kStaffInForce || tag == kEntry) return false;
  return Changed(document, document.records.Create(tag, id, buffer, size));
}

bool DeleteRecord(Document& document, unsigned int tag, const EDataID& id) {
  return Changed(document, document.records.Delete(tag, id));
}

bool PreviousRecord(const Document& document, unsigned int tag, EDataID& id, void* buffer, int size) {
  if (tag == kEntry) return StepEntry(document, id, -1, buffer, size);
  return document.records.Previous(tag, id, buffer, size);
}

bool NextRecord(const Document& document, unsigned int tag, EDataID& id, void* buffer, int size) {
  if (tag == kEntry) return StepEntry(document, id, 1, buffer, size);
  return document.records.Next(tag, id, buffer, size);
}

}  // namespace sok
