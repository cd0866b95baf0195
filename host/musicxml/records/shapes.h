// The lines of a score as smart shapes with their marks, and the staves of its parts as staff lists.
//
// A slur is tied to its first and last entry; a hairpin, octave line, bracket or pedal line to places in measures. Each
// shape is a shape record; every measure that it touches has a measure mark, those between its first and its last with
// a centre shape; and the entries of a slur have an entry mark each.
//
// Part n (from 1) becomes staff list n: Document::SetStaffList, and the instruments of the part in its four instrument
// lists, each a chain of records of six.
#pragma once

#include <cstddef>
#include <memory>

#include "host/musicxml/records/reader_context.h"

namespace sok {

inline constexpr unsigned int kShapeOnEntries = 0x40000000;  // in ShapeRecord::flags

enum class ShapeKind : short { kSlur, kCrescendo, kDiminuendo, kOctaveLine, kBracket, kPedal };

#pragma pack(push, 2)

// Measures count from 1, positions are in duration units from the start of their measure.
struct ShapeRecord {
  ShapeKind kind;
  unsigned int flags;
  unsigned short start_instrument;
  short start_measure;
  int start_entry;  // 0 unless kShapeOnEntries
  int start_position;
  short octaves;  // of an octave line: how far it sounds from what is written, up or down
  unsigned char unused20[16];
  unsigned short end_instrument;
  short end_measure;
  int end_entry;
  int end_position;
  unsigned char unused48[44];
};

struct MeasureMarkRecord {
  unsigned short shape;
  unsigned short center;  // 0 in the shape's first and last measure
  unsigned char unused4[8];
};

struct EntryMarkRecord {
  unsigned short shape;
  unsigned char unused2[8];
};

#pragma pack(pop)

static_assert(sizeof(ShapeRecord) == 92 && offsetof(ShapeRecord, flags) == 2, "ShapeRecord layout");
static_assert(offsetof(ShapeRecord, start_instrument) == 6 && offsetof(ShapeRecord, start_measure) == 8, "start");
static_assert(offsetof(ShapeRecord, start_entry) == 10 && offsetof(ShapeRecord, end_instrument) == 36, "start, end");
static_assert(offsetof(ShapeRecord, end_measure) == 38 && offsetof(ShapeRecord, end_entry) == 40, "end");
static_assert(sizeof(MeasureMarkRecord) == 12 && offsetof(MeasureMarkRecord, center) == 2, "MeasureMarkRecord layout");
static_assert(sizeof(EntryMarkRecord) == 10, "EntryMarkRecord layout");

// Adds the shapes, part by part in the order in which they end, and the staff lists. A line without a start or without
// an end, one that starts anew under the number of a line still open, and those beyond 65533 are left out.
class ShapeReader {
 public:
  explicit ShapeReader(const ReaderContext& context);
  ~ShapeReader();
  ShapeReader(const ShapeReader&) = delete;
  ShapeReader& operator=(const ShapeReader&) = delete;

  void Read(const OpenMeasure& measure);  // part by part, and in a part measure by measure
  void Finish();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace sok
