#include "SokExtShared/LIB/records/record_runs.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"

using namespace record_calls;

namespace {

constexpr int kPiece = 12;  // bytes in a record of a run
constexpr int kLastSubIndex = std::numeric_limits<short>::max();

struct Piece {
  char bytes[kPiece];
};

// A run by its tag and the key of its first record.
class Run {
 public:
  Run(unsigned int tag, const EDataID& first) : tag_(tag), first_(first) {}

  // How many more records than the first fit behind the key.
  int Room() const { return kLastSubIndex - first_.other.subIndex + 1; }

  bool LoadPiece(int index, void* piece) const { return index < Room() && Load(tag_, Key(index), piece, kPiece); }
  bool SavePiece(int index, const void* piece) const { return Save(tag_, Key(index), piece, kPiece); }

  void DeleteAll() const {
    int records = 0;
    for (Piece scratch; LoadPiece(records, &scratch);) ++records;
    while (records > 0) Delete(tag_, Key(--records));  // from the end: the host moves later records down
  }

 private:
  EDataID Key(int index) const {
    EDataID id = first_;
    id.other.subIndex = static_cast<short>(first_.other.subIndex + index);
    return id;
  }

  unsigned int tag_;
  EDataID first_;
};

// The length of the text in a run.
int TextLength(const Run& run) {
  int length = 0;
  bool zero_before = false;  // the byte before was zero, and what follows tells whether it belongs to the text
  Piece piece{};
  for (int index = 0; run.LoadPiece(index, &piece); ++index, piece = {}) {
    for (const char byte : piece.bytes) {
      if (byte == 0 && zero_before) return length - 1;
      zero_before = byte == 0;
      ++length;
    }
  }
  return zero_before ? length - 1 : length;
}

bool LoadText(const Run& run, char* text, int length) {
  const int full = length / kPiece;
  for (int index = 0; index < full; ++index) {
    if (!run.LoadPiece(index, text + index * kPiece)) return false;
  }
  const int rest = length % kPiece;
  if (rest == 0) return true;
  Piece last{};
  if (!run.LoadPiece(full, &last)) return false;
  std::memcpy(text + full * kPiece, last.bytes, static_cast<std::size_t>(rest));
  return true;
}

bool SaveBytes(const Run& run, const char* data, int size) {
  const int full = size / kPiece;
  for (int index = 0; index < full; ++index) {
    if (!run.SavePiece(index, data + index * kPiece)) return false;
  }
  const int rest = size % kPiece;
  if (rest == 0) return true;
  Piece last{};
  std::memcpy(last.bytes, data + full * kPiece, static_cast<std::size_t>(rest));
  return run.SavePiece(full, &last);
}

using UnitBuffer = std::unique_ptr<unsigned short[]>;

// Zeroed units; null when there is no memory.
UnitBuffer NewUnits(std::size_t count) { return UnitBuffer(new (std::nothrow) unsigned short[count]()); }

}  // namespace

short OrvelOtArray_Save(unsigned int tag, const EDataID* id, short count, int elementSize, void* data) {
  const Run run(tag, *id);
  const long long total = static_cast<long long>(count) * elementSize;
  if (total < 0 || (total > 0 && data == nullptr) || total > static_cast<long long>(run.Room()) * kPiece) return 0;
  run.DeleteAll();
  return SaveBytes(run, static_cast<const char*>(data), static_cast<int>(total));
}

bool sx_loadotherstring(unsigned int tag, int cmper, int subIndex, char*& text) {
  const Run run(tag, OtherKey(cmper, subIndex));
  const int length = TextLength(run);
  const std::size_t size = static_cast<std::size_t>(length) + 1;
  text = static_cast<char*>(std::malloc(size));
  if (text == nullptr) return false;
  std::memset(text, 0, size);  // a record that comes shorter than it was leaves nothing undefined
  if (LoadText(run, text, length)) return true;
  std::free(text);
  text = nullptr;
  return false;
}

bool sx_saveotherstring(unsigned int tag, int cmper, int subIndex, char* text) {
  if (text == nullptr) return false;
  const std::size_t length = std::strlen(text);
  if (length > static_cast<std::size_t>(std::numeric_limits<short>::max())) return false;
  const EDataID id = OtherKey(cmper, subIndex);
  return OrvelOtArray_Save(tag, &id, static_cast<short>(length), 1, text) != 0;
}

bool sx_loadotherstring_UTF16(unsigned int tag, int cmper, int subIndex, unsigned short*& text) {
  const EDataID id = OtherKey(cmper, subIndex);
  int size = 0;
  if (SX_LoadEData(tag, &id, nullptr, &size, kInterfaceVersion) == 0 || size < 0) return false;
  const std::size_t units = static_cast<std::size_t>(size) / 2;
  UnitBuffer buffer = NewUnits(units);
  text = nullptr;
  if (buffer == nullptr || !Load(tag, id, buffer.get(), static_cast<int>(units * 2))) return false;
  if (std::find(buffer.get(), buffer.get() + units, 0) == buffer.get() + units) {
    UnitBuffer ended = NewUnits(units + 1);
    if (ended == nullptr) return false;
    std::copy_n(buffer.get(), units, ended.get());
    buffer = std::move(ended);
  }
  text = buffer.release();
  return true;
}

bool sx_saveotherstring_UTF16(unsigned int tag, int cmper, int subIndex, unsigned short* text) {
  if (text == nullptr) return false;
  const auto size = static_cast<int>(2 * sx_strlen(text) + 2);
  return Save(tag, OtherKey(cmper, subIndex), text, size);
}
