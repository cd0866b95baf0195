#include "host/musicxml/records/shapes.h"

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "SokExtShared/SokEDK/Source/record_formats.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

namespace sok {

namespace {

constexpr short kNextPlace = -1;
constexpr int kQuarter = 1024;
constexpr int kHighestLineNumber = 16;
constexpr std::size_t kCenterShapeSize = 22;

EDataID OtherKey(unsigned short number, short place) {
  EDataID id{};
  id.other.cmper = number;
  id.other.subIndex = place;
  return id;
}

// The elements that draw a line, and what their types do to it.
enum class Step { kNone, kStart, kStop, kChange };

Step StepOf(std::string_view element, std::string_view type) {
  if (type == "stop" || type == "discontinue") return Step::kStop;
  if (type == "change") return element == "pedal" ? Step::kChange : Step::kNone;
  if (type == "start" || type == "sostenuto" || type == "resume") return Step::kStart;
  if (type == "crescendo" || type == "diminuendo") return element == "wedge" ? Step::kStart : Step::kNone;
  if (type == "up" || type == "down") return element == "octave-shift" ? Step::kStart : Step::kNone;
  return Step::kNone;
}

constexpr std::string_view kLineElements[] = {"slur", "wedge", "octave-shift", "bracket", "pedal"};

ShapeKind KindOf(std::size_t element, std::string_view type) {
  switch (element) {
    case 0:
      return ShapeKind::kSlur;
    case 1:
      return type == "diminuendo" ? ShapeKind::kDiminuendo : ShapeKind::kCrescendo;
    case 2:
      return ShapeKind::kOctaveLine;
    case 3:
      return ShapeKind::kBracket;
    default:
      return ShapeKind::kPedal;
  }
}

// 8 is one octave, 15 two, 22 three. Notes that sound higher than written are moved down on paper.
short OctavesOf(pugi::xml_node line, std::string_view type) {
  const int octaves = (std::clamp(line.attribute("size").as_int(8), 8, 22) - 1) / 7;
  return static_cast<short>(type == "down" ? octaves : -octaves);
}

// One end of a line: where it stands in the score.
struct End {
  short slot = 0;
  short measure = 0;
  int position = 0;
  int entry = 0;
};

struct Line {
  std::size_t element = 0;  // of kLineElements
  int number = 1;           // tells lines of one element apart while they are open
  ShapeKind kind = ShapeKind::kSlur;
  short octaves = 0;
  End start;
};

// The lines of one part. They are told apart by number in the order of the text; but the text may hold the end of a
// line before its start where they stand in different voices of one measure.
class PartLines {
 public:
  explicit PartLines(const ReaderContext& context) : context_(context) {}

  void ReadMeasure(const OpenMeasure& measure) {
    early_stops_.clear();
    int chord_position = 0;  // the notes of a chord stand where its first one does
    for (std::size_t i = 0; i < measure.parts.items.size(); ++i) {
      const Item& item = measure.parts.items[i];
      if (item.kind == ItemKind::kNote) {
        if (!item.chord) chord_position = ToUnits(item.before);
        if (item.has_notations) ReadNote(item.node, measure.entries[i], Place(item.node, measure, chord_position));
      } else if (Is(item.node.name(), "direction")) {
        const int offset = OffsetOf(item.node, item.divisions);
        const End place = Place(item.node, measure, ToUnits(item.before) + offset);
        for (const pugi::xml_node type : item.node.children("direction-type")) {
          for (const pugi::xml_node line : type.children()) ReadLine(line, place);
        }
      }
    }
  }

  const std::vector<ShapeRecord>& shapes() const { return shapes_; }

 private:
  End Place(pugi::xml_node child, const OpenMeasure& measure, int position) const {
    const int staff = std::max(child.child("staff").text().as_int(1), 1);
    return {context_.SlotOf(measure.part, staff), measure.measure, std::max(position, 0), 0};
  }

  // How far a direction stands from its place in the text, in duration units.
  static int OffsetOf(pugi::xml_node direction, const Fraction& divisions) {
    const double per_unit = static_cast<double>(divisions.denominator) / static_cast<double>(divisions.numerator);
    const double units = direction.child("offset").text().as_double() * kQuarter * per_unit;
    return static_cast<int>(std::clamp(units, -1e6, 1e6));
  }

  // An entry stands on the staff whose frame holds it, wherever the note is drawn.
  void ReadNote(pugi::xml_node note, int entry, End place) {
    place.entry = entry;
    if (const auto found = context_.document.FindEntry(entry)) {
      place.slot = context_.document.InstToSlot(found->place.instrument, 0);
    }
    // A line that ends here makes way for the next of its number, in whichever order they are written.
    for (const Step step : {Step::kStop, Step::kStart}) {
      for (const pugi::xml_node notations : note.children("notations")) {
        for (const pugi::xml_node slur : notations.children("slur")) {
          if (StepOf("slur", slur.attribute("type").value()) == step) ReadLine(slur, place);
        }
      }
    }
  }

  void ReadLine(pugi::xml_node node, const End& place) {
    const auto* const element = std::find(std::begin(kLineElements), std::end(kLineElements), node.name());
    if (element == std::end(kLineElements)) return;
    const std::string_view type = node.attribute("type").value();
    Line line;
    line.element = static_cast<std::size_t>(element - kLineElements);
    line.number = std::clamp(node.attribute("number").as_int(1), 1, kHighestLineNumber);
    line.kind = KindOf(line.element, type);
    line.octaves = line.kind == ShapeKind::kOctaveLine ? OctavesOf(node, type) : short{0};
    line.start = place;
    const Step step = StepOf(*element, type);
    if (step == Step::kStop || step == Step::kChange) Stop(line);
    if (step == Step::kStart || step == Step::kChange) Start(line);
  }

  // The line of this number on this staff, or else on another of the part; the last one first.
  static std::vector<Line>::iterator Find(std::vector<Line>& lines, const Line& wanted) {
    auto found = lines.end();
    for (auto line = lines.begin(); line != lines.end(); ++line) {
      if (line->element != wanted.element || line->number != wanted.number) continue;
      if (found == lines.end() || line->start.slot == wanted.start.slot || found->start.slot != wanted.start.slot) {
        found = line;
      }
    }
    return found;
  }

  void Start(const Line& line) {
    const auto stop = Find(early_stops_, line);
    if (stop != early_stops_.end() && stop->start.position > line.start.position) {
      Add(line, stop->start);
      early_stops_.erase(stop);
      return;
    }
    std::erase_if(open_, [&](const Line& open) {
      return open.element == line.element && open.number == line.number && open.start.slot == line.start.slot;
    });
    open_.push_back(line);
  }

  void Stop(const Line& line) {
    const auto open = Find(open_, line);
    if (open == open_.end()) {
      early_stops_.push_back(line);
      return;
    }
    Add(*open, line.start);
    open_.erase(open);
  }

  // A slur may end on another staff; other lines stay on the one they start on.
  void Add(const Line& line, const End& end) {
    const bool on_entries = line.kind == ShapeKind::kSlur && line.start.entry != 0 && end.entry != 0;
    const short end_slot = line.kind == ShapeKind::kSlur ? end.slot : line.start.slot;
    ShapeRecord shape{};
    shape.kind = line.kind;
    shape.octaves = line.octaves;
    shape.start_instrument = InstrumentAt(line.start.slot);
    shape.start_measure = line.start.measure;
    shape.start_position = line.start.position;
    shape.end_instrument = InstrumentAt(end_slot);
    shape.end_measure = end.measure;
    shape.end_position = end.position;
    if (on_entries) {
      shape.flags = kShapeOnEntries;
      shape.start_entry = line.start.entry;
      shape.end_entry = end.entry;
    }
    shapes_.push_back(shape);
  }

  unsigned short InstrumentAt(short slot) const {
    return slot > 0 ? static_cast<unsigned short>(context_.staves[static_cast<std::size_t>(slot - 1)].instrument) : 0;
  }

  const ReaderContext& context_;
  std::vector<ShapeRecord> shapes_;
  std::vector<Line> open_;
  std::vector<Line> early_stops_;  // of the measure at hand, each waiting for its start
};

void CreateMeasureMark(RecordStore& records, short measure, unsigned short shape, unsigned short center) {
  EDataID id = OtherKey(static_cast<unsigned short>(measure), kNextPlace);
  const MeasureMarkRecord mark{shape, center, {}};
  records.Create(record_tags::kSmartShapeMeasureMark, id, &mark, sizeof mark);
}

void CreateEntryMark(RecordStore& records, int entry, unsigned short shape) {
  EDataID id{};
  id.entryDetail.entryNum = entry;
  id.entryDetail.subIndex = kNextPlace;
  const EntryMarkRecord mark{shape, {}};
  records.Create(record_tags::kSmartShapeEntryMark, id, &mark, sizeof mark);
}

void CreateShape(RecordStore& records, const ShapeRecord& shape) {
  EDataID id = OtherKey(EDataID::kHostChooses, 0);
  if (!records.Create(record_tags::kSmartShape, id, &shape, sizeof shape)) return;
  const unsigned short number = id.other.cmper;
  for (int measure = shape.start_measure; measure <= shape.end_measure; ++measure) {
    unsigned short center = 0;
    if (measure != shape.start_measure && measure != shape.end_measure) {
      EDataID center_id{};
      center_id.detail.cmper = number;
      center_id.detail.secondCmper = EDataID::kHostChooses;
      constexpr std::array<unsigned char, kCenterShapeSize> bytes{};
      records.Create(record_tags::kCenterShape, center_id, bytes.data(), bytes.size());
      center = center_id.detail.secondCmper;
    }
    CreateMeasureMark(records, static_cast<short>(measure), number, center);
  }
  if ((shape.flags & kShapeOnEntries) != 0) {
    CreateEntryMark(records, shape.start_entry, number);
    CreateEntryMark(records, shape.end_entry, number);
  }
}

void AddStaffList(Document& document, unsigned short list, const std::vector<short>& instruments) {
  document.SetStaffList(list, instruments);
  short place = 0;
  for (std::size_t first = 0; first < instruments.size(); first += std::size(EDT_DC().inst), ++place) {
    EDT_DC record{};
    const auto count = std::min(instruments.size() - first, std::size(record.inst));
    std::copy_n(instruments.begin() + static_cast<std::ptrdiff_t>(first), count, record.inst);
    for (const unsigned int tag : record_tags::kInstrumentList) {
      document.records.Save(tag, OtherKey(list, place), &record, sizeof record);
    }
  }
}

}  // namespace

struct ShapeReader::Parts {
  const ReaderContext& context;
  std::map<int, PartLines> lines;
};

ShapeReader::ShapeReader(const ReaderContext& context) : parts_(new Parts{context, {}}) {}
ShapeReader::~ShapeReader() = default;

void ShapeReader::Read(const OpenMeasure& measure) {
  parts_->lines.try_emplace(measure.part, parts_->context).first->second.ReadMeasure(measure);
}

void ShapeReader::Finish() {
  const ReaderContext& context = parts_->context;
  for (const auto& [part, lines] : parts_->lines) {
    for (const ShapeRecord& shape : lines.shapes()) CreateShape(context.document.records, shape);
  }
  std::map<int, std::vector<short>> instruments;  // of a part
  for (const Staff& staff : context.staves) instruments[staff.part].push_back(staff.instrument);
  for (const auto& [part, of_part] : instruments) {
    AddStaffList(context.document, static_cast<unsigned short>(part + 1), of_part);
  }
}

}  // namespace sok
