// An extension for engravers, and a walk through the kit. Two commands on the selected measures and staves:
//
//   Report Selection       each staff by name: its entries by duration; then the slurs, hairpins and other shapes
//   Accent First Notes     an accent on the first note of every selected measure, where it has none yet
#include <map>
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

// Adds a line whose format is a text of the string table (%d for numbers, %S for UTF-16 text).
template <typename... Arguments>
void AddLine(eu16string& report, int format, Arguments... arguments) {
  report += edk::Formatted(edk::Text(format), arguments...);
  report += '\n';
}

// ---- Report Selection ----

// Notes by duration, and the number of rests.
struct Census {
  std::map<int, int, std::greater<>> notes;
  int rests = 0;

  void Count(const edk::Entry& entry) {
    if (entry.IsRest()) {
      ++rests;
    } else if (entry.Duration() != 0) {
      ++notes[entry.Duration()];
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
  for (const edk::Frame& frame : edk::Frames(edk::Cells(region, slot), layers)) {
    for (const edk::Entry& entry : frame.Entries()) census.Count(entry);
  }
  const eu16string name = edk::InstrumentName(inst);
  AddLine(report, kStaffHeading, slot, (name.empty() ? edk::Text(kUnnamedStaff) : name).c_str());
  for (const auto& [duration, count] : census.notes) AddEntryLine(report, duration, count);
  if (census.rests > 0) AddLine(report, kRestLine, census.rests);
  if (census.notes.empty() && census.rests == 0) AddLine(report, kNothingLine);
}

void AddShapes(eu16string& report, const EREGION& region, const std::set<unsigned short>& instruments) {
  std::set<unsigned short> shapes;  // those with a mark in one of the measures
  for (const short measure : edk::Measures(region)) {
    for (const auto& [key, mark] : edk::RecordsOf<EDTSmartShapeMeasMark>({measure})) shapes.insert(mark.shape);
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
  for (const short slot : edk::Slots(region)) {
    const short inst = SX_SlotToInst(slot, region.start.stafflist, kInterfaceVersion);
    instruments.insert(static_cast<unsigned short>(inst));
    AddStaff(report, region, slot, inst, layers);
  }
  AddShapes(report, region, instruments);
  edk::Alert(report);
  return 0;  // nothing was changed
}

// ---- Accent First Notes ----

bool HasArticulation(const edk::Entry& entry, int definition) {
  for (const auto& [key, assignment] : edk::RecordsOf<edk::ArticulationAssignment>({entry.Number()})) {
    if (assignment.definition == definition) return true;
  }
  return false;
}

// Accents the first note of a cell's top layer that has notes. Returns whether that changed anything. The frame is
// saved because its entry tells the host that it has articulations.
bool AccentFirstNote(const edk::Cell& cell, short layers, int definition) {
  for (const edk::Frame& frame : edk::Frames(cell, layers)) {
    for (const edk::Entry& entry : frame.Entries()) {
      if (entry.IsRest()) continue;
      if (HasArticulation(entry, definition) || !AddArticulation(entry.Raw(), definition, 0, 0)) return false;
      frame.Save();
      return true;
    }
  }
  return false;
}

short AccentFirstNotes(const EREGION& region, short layers) {
  edk::Edit edit(kAccentCommand + 1);  // one step in the undo menu
  EDTArticulationDefinition2012 accent{};
  accent.words[0] = '>';  // its character in the music font; everything else as the host has it
  const int definition = FindOrCreateArticulation(accent);
  bool changed = false;
  for (const edk::Cell& cell : edk::Cells(region)) changed |= AccentFirstNote(cell, layers, definition);
  return edit.Finish(changed);
}

constexpr ExtensionCommand kCommands[] = {
    {kReportCommand, ReportSelection},
    {kAccentCommand, AccentFirstNotes},
};

}  // namespace

SOK_EXTENSION(kCommands, kNoSelection);
