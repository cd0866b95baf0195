#include "SokExtShared/LIB/notation/entry_attachments.h"

#include <cstring>

#include "SokExtShared/LIB/records/typed_records.h"

namespace {

constexpr unsigned int kNoteheadMods = 0x4502636E;            // 'E', 2, 'cn'
constexpr unsigned int kArticulationAssignment = 0x6564494D;  // 'edIM'

struct ArticulationAssignment {
  short definition;
  short first;
  unsigned char host4[2];
  short second;
  unsigned char host8[4];
};
static_assert(sizeof(ArticulationAssignment) == 12 && offsetof(ArticulationAssignment, second) == 6,
              "ArticulationAssignment layout");

}  // namespace

bool ChangeNotehead(EXENTRY& entry, int index, int notehead) {
  const short identifier = entry.notes[index].identifier;
  EDTNoteheadMods2012 record{};
  short subIndex = 0;
  const bool loaded = sx_loadnoteheadmod(entry.number, identifier, record, subIndex, kNoteheadMods);
  if (!loaded) record = {};
  std::memcpy(&record.host[0], &identifier, sizeof identifier);
  std::memcpy(&record.host[6], &notehead, sizeof notehead);
  const bool stored = loaded ? sx_savenoteheadmod(entry.number, record, subIndex, kNoteheadMods)
                             : sx_addnoteheadmod(entry.number, record, kNoteheadMods);
  entry.flags |= kEntryHasNoteheads;
  return stored;
}

bool AddArticulation(EXENTRY& entry, int definition, int first, int second) {
  ArticulationAssignment assignment{};
  assignment.definition = static_cast<short>(definition);
  assignment.first = static_cast<short>(first);
  assignment.second = static_cast<short>(second);
  int subIndex = -1;
  const bool created = sx_createentrydetail(kArticulationAssignment, static_cast<unsigned int>(entry.number), subIndex,
                                            &assignment, sizeof assignment);
  entry.flags |= kEntryHasArticulations;
  return created;
}
