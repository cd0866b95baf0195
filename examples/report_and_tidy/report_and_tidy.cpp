// An extension for engravers, and a walk through the kit. Two commands on the selected measures and staves:
//
//   Report Selection       each staff by name: its entries by duration; then the slurs, hairpins and other shapes
//   Accent First Notes     an accent on the first note of every selected measure, where it has none yet
#include <array>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "SokExtShared/SokEDK.h"

namespace {

// The texts in Localizable.strings. A command's own are three numbers in a row.
enum Text : int {
  kReportCommand = 20000,
  kAccentCommand = 20003,
  kNoSelection = 20006,
  kTitle = 20010,
  kUnnamedStaff,
  kStaffHeading,
  kEntryLine,
  kLongEntryLine,
  kRestLine,
  kNothingLine,
  kShapesHeading,
  kShapeOnNotesLine,
  kShapeOnMeasuresLine,
};

// ---- The music ----

struct FreeFrame {
  void operator()(EXTGF2005a* frame) const { SX_FreeTGF(frame, kInterfaceVersion); }
};
using Frame = std::unique_ptr<EXTGF2005a, FreeFrame>;  // freed once, whatever happens in between

// One staff in one measure of a selection.
struct Cell {
  unsigned short stafflist;
  short slot;
  short measure;

  Frame Load(short layer) const { return Frame(SX_LoadTGF(stafflist, slot, measure, layer, 1, kInterfaceVersion)); }
};

// Visits the selected measures of one staff. Wider than 16 bits, so that a selection up to the last measure ends.
template <typename Visit>
void ForEachMeasure(const EREGION& region, short slot, Visit visit) {
  for (int measure = region.start.measure; measure <= region.end.measure; ++measure) {
    visit(Cell{region.start.stafflist, slot, static_cast<short>(measure)});
  }
}

template <typename Visit>
void ForEachSlot(const EREGION& region, Visit visit) {
  for (int slot = region.start.slot; slot <= region.end.slot; ++slot) visit(static_cast<short>(slot));
}

bool IsNote(const EXENTRY& entry) { return (entry.flags & kEntryIsNote) != 0; }

// ---- Texts ----

using TextBuffer = std::array<unsigned short, 512>;

TextBuffer TextOf(int number) {
  TextBuffer text{};
  PlugIn_GetStringResource(number, text.data(), static_cast<short>(text.size()));
  return text;
}

// Adds a line whose format is a text of the string table (%d for numbers, %S for UTF-16 text).
template <typename... Arguments>
void AddLine(eu16string& report, int format, Arguments... arguments) {
  TextBuffer line{};
  sx_sprintf(line.data(), line.size(), TextOf(format).data(), arguments...);
  report += line.data();
  report += '\n';
}

// ---- Report Selection ----

// Notes by duration, and the number of rests.
struct Census {
  std::map<int, int, std::greater<>> notes;
  int rests = 0;

  void Count(const EXTGF2005a& frame) {
    for (int i = 0; i < frame.count; ++i) {
      const EXENTRY& entry = frame.entries[i];
      if (!IsNote(entry)) {
        ++rests;
      } else if (entry.duration != 0) {
        ++notes[entry.duration];
      }
    }
  }
};

// "1/4.": the note value, and a dot for each of its dots.
void AddEntryLine(eu16string& report, int duration, int count) {
  static constexpr unsigned short kDots[] = {'.', '.', '.', '.', 0};
  const int dots = std::min(CountDots(duration), 4);
  const unsigned short* const dots_text = kDots + (4 - dots);
  const int base = DotsBase(duration);
  if (base > kWholeRestDuration) {
    AddLine(report, kLongEntryLine, count, base / kWholeRestDuration, dots_text);
  } else {
    AddLine(report, kEntryLine, count, kWholeRestDuration / base, dots_text);
  }
}

void AddStaff(eu16string& report, const EREGION& region, short slot, short inst, short layers) {
  Census census;
  ForEachMeasure(region, slot, [&](const Cell& cell) {
    for (short layer = 0; layer < layers; ++layer) {
      if (const Frame frame = cell.Load(layer)) census.Count(*frame);
    }
  });
  const unsigned short* const name = sx_getinstname_utf16(inst);  // caret commands are gone; valid until the next name
  AddLine(report, kStaffHeading, slot, name[0] != 0 ? name : TextOf(kUnnamedStaff).data());
  for (const auto& [duration, count] : census.notes) AddEntryLine(report, duration, count);
  if (census.rests > 0) AddLine(report, kRestLine, census.rests);
  if (census.notes.empty() && census.rests == 0) AddLine(report, kNothingLine);
}

// The numbers of the shapes that have a mark in a measure. A measure's marks are numbered from 0 without gaps.
void CollectShapes(short measure, std::set<unsigned short>& shapes) {
  constexpr short kMostMarks = 1000;
  EDTSmartShapeMeasMark mark{};
  for (short i = 0; i < kMostMarks && mark.Load(measure, i); ++i) shapes.insert(mark.shape);
}

void AddShapes(eu16string& report, const EREGION& region, const std::set<unsigned short>& instruments) {
  std::set<unsigned short> shapes;
  for (int measure = region.start.measure; measure <= region.end.measure; ++measure) {
    CollectShapes(static_cast<short>(measure), shapes);
  }
  bool heading = false;
  for (const unsigned short number : shapes) {
    EDTSmartShape shape{};
    if (!shape.Load(number) || !instruments.contains(shape.startStaff)) continue;
    if (!std::exchange(heading, true)) AddLine(report, kShapesHeading);
    // Slurs hold on to notes, hairpins and brackets to places in measures.
    const bool on_notes = (shape.flags & kSmartShapeOnEntries) != 0;
    AddLine(report, on_notes ? kShapeOnNotesLine : kShapeOnMeasuresLine, number, shape.startMeasure, shape.endMeasure);
  }
}

short ReportSelection(const EREGION& region, short layers) {
  eu16string report;
  AddLine(report, kTitle, region.start.measure, region.end.measure);
  std::set<unsigned short> instruments;
  ForEachSlot(region, [&](short slot) {
    const short inst = SX_SlotToInst(slot, region.start.stafflist, kInterfaceVersion);
    instruments.insert(static_cast<unsigned short>(inst));
    AddStaff(report, region, slot, inst, layers);
  });
  AddShapes(report, region, instruments);
  SX_AlertMessage_UTF16(nullptr, 0, 0, report.c_str(), kInterfaceVersion);
  return 0;  // nothing was changed
}

// ---- Accent First Notes ----

// An articulation assignment: tag 'edIM', key view `entryDetail`.
struct ArticulationAssignment {
  short definition;
  short host2[5];
};
constexpr unsigned int kArticulationTag = 0x6564494D;

bool HasArticulation(const EXENTRY& entry, int definition) {
  constexpr int kMostArticulations = 100;
  ArticulationAssignment assignment{};
  for (int i = 0; i < kMostArticulations; ++i) {
    if (!sx_loadentrydetail(kArticulationTag, entry.number, i, &assignment, sizeof assignment)) return false;
    if (assignment.definition == definition) return true;
  }
  return false;
}

// Whether the frame has a note; the first one is accented then. The frame is saved because its entry tells the host
// that it has articulations.
bool AccentFirstNote(EXTGF2005a& frame, int definition, bool& changed) {
  for (int i = 0; i < frame.count; ++i) {
    EXENTRY& entry = frame.entries[i];
    if (!IsNote(entry)) continue;
    if (!HasArticulation(entry, definition) && AddArticulation(entry, definition, 0, 0)) {
      SX_SaveTGF(&frame, kInterfaceVersion);
      changed = true;
    }
    return true;
  }
  return false;
}

// What happens in its lifetime is one step in the undo menu; nothing is, when nothing was changed.
class Edit {
 public:
  explicit Edit(int name) { SX_StartSonkelEdit_UTF16(TextOf(name).data(), kInterfaceVersion); }
  Edit(const Edit&) = delete;
  Edit& operator=(const Edit&) = delete;
  ~Edit() {
    if (keep) {
      SX_EndSonkelEdit(kInterfaceVersion);
    } else {
      SX_CancelSonkelEdit(kInterfaceVersion);
    }
  }

  bool keep = false;
};

short AccentFirstNotes(const EREGION& region, short layers) {
  Edit edit(kAccentCommand + 1);
  EDTArticulationDefinition2012 accent{};
  accent.words[0] = '>';  // its character in the music font; everything else as the host has it
  const int definition = FindOrCreateArticulation(accent);
  ForEachSlot(region, [&](short slot) {
    ForEachMeasure(region, slot, [&](const Cell& cell) {
      for (short layer = 0; layer < layers; ++layer) {
        if (const Frame frame = cell.Load(layer); frame && AccentFirstNote(*frame, definition, edit.keep)) break;
      }
    });
  });
  return edit.keep ? 1 : 0;
}

constexpr ExtensionCommand kCommands[] = {
    {kReportCommand, ReportSelection},
    {kAccentCommand, AccentFirstNotes},
};

}  // namespace

SOK_EXTENSION(kCommands, kNoSelection);
