#include "SokExtShared/LIB/notation/entry_attachments.h"

#include <cstring>

#include "SokExtShared/LIB/records/typed_records.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using record_tags::kNotehead;

bool ChangeNotehead(EXENTRY& entry, int index, int notehead) {
  const short identifier = entry.notes[index].identifier;
  EDTNoteheadMods2012 record{};
  short subIndex = 0;
  const bool loaded = sx_loadnoteheadmod(entry.number, identifier, record, subIndex, kNotehead);
  if (!loaded) record = {};
  std::memcpy(&record.host[0], &identifier, sizeof identifier);
  std::memcpy(&record.host[6], &notehead, sizeof notehead);
  const bool stored = loaded ? sx_savenoteheadmod(entry.number, record, subIndex, kNotehead)
                             : sx_addnoteheadmod(entry.number, record, kNotehead);
  entry.flags |= kEntryHasNoteheads;
  return stored;
}

bool AddArticulation(EXENTRY& entry, int definition, int first, int second) {
  edk::ArticulationAssignment assignment{};
  assignment.definition = static_cast<short>(definition);
  assignment.first = static_cast<short>(first);
  assignment.second = static_cast<short>(second);
  int subIndex = -1;
  const bool created = sx_createentrydetail(record_tags::kArticulation, static_cast<unsigned int>(entry.number),
                                            subIndex, &assignment, sizeof assignment);
  entry.flags |= kEntryHasArticulations;
  return created;
}
