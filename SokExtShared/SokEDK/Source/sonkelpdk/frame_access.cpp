#include "SokExtShared/SokEDK/Source/sonkelpdk/frame_access.h"

#include <algorithm>
#include <span>

#include "SokExtShared/SokEDK/Source/sonkelpdk/binding.h"

bool CanAddNoteRecordToRests = true;
int LoadedTGFCounter = 0;

EXTGF2005a::~EXTGF2005a() {
  delete[] entries;  // array delete leaves a null array alone
  delete[] second;
}

namespace {

bool SharesIdentifier(std::span<const EXNOTE> notes, std::size_t note) {
  for (std::size_t other = 0; other < notes.size(); ++other) {
    if (other != note && notes[other].identifier == notes[note].identifier) return true;
  }
  return false;
}

void GiveUniqueIdentifiers(std::span<EXNOTE> notes) {
  int largest = 0;
  for (const EXNOTE& note : notes) largest = std::max<int>(largest, note.identifier);
  for (std::size_t i = 0; i < notes.size(); ++i) {
    if (notes[i].identifier == 0 || SharesIdentifier(notes, i)) notes[i].identifier = static_cast<short>(++largest);
  }
  for (EXNOTE& note : notes) {
    const unsigned int mirrored = static_cast<unsigned int>(note.identifier & 0x1F) << 16;
    note.flags = (note.flags & ~kNoteIdentifierMask) | mirrored;
  }
}

void CleanEntry(EXENTRY& entry, bool add_note_to_rests) {
  // A count that no host gives is held to the range, so that no slot beyond is touched.
  const int notes = std::clamp<int>(entry.noteCount, 0, EXENTRY::kMostNotes);
  GiveUniqueIdentifiers({entry.notes, static_cast<std::size_t>(notes)});
  std::fill(entry.notes + notes, entry.notes + EXENTRY::kMostNotes, EXNOTE{});
  if (entry.noteCount == 0 && add_note_to_rests) {
    entry.noteCount = 1;
    entry.notes[0].flags = kNoteLegal;
    entry.flags |= kEntryHasRestNote;
  }
}

void CleanTGF(EXTGF2005a* frame) {
  if (frame == nullptr || frame->count <= 0 || frame->entries == nullptr) return;
  const bool add_note_to_rests = CanAddNoteRecordToRests;
  EXENTRY* const entries = frame->entries;
  for (int i = 0; i < frame->count; ++i) CleanEntry(entries[i], add_note_to_rests);
}

}  // namespace

EXTGF2005a* SX_LoadTGF(unsigned short stafflist, short slot, short measure, short layer, short option,
                       unsigned int version) {
  ++LoadedTGFCounter;
  SX_BIND(SX_LoadTGF);
  return fpProc != nullptr ? fpProc(stafflist, slot, measure, layer, option, version) : nullptr;
}

int SX_FreeTGF(EXTGF2005a* frame, unsigned int version) {
  --LoadedTGFCounter;
  SX_BIND(SX_FreeTGF);
  return fpProc != nullptr ? fpProc(frame, version) : 0;
}

short SX_SaveTGF(EXTGF2005a* frame, unsigned int version) {
  CleanTGF(frame);
  SX_BIND(SX_SaveTGF);
  return fpProc != nullptr ? fpProc(frame, version) : short{0};
}

short SX_InsertEXENTRY(EXTGF2005a* frame, short index, short count, unsigned int version) {
  CleanTGF(frame);
  SX_BIND(SX_InsertEXENTRY);
  return fpProc != nullptr ? fpProc(frame, index, count, version) : short{0};
}

short SX_DeleteEXENTRY(EXTGF2005a* frame, short index, short count, unsigned int version) {
  CleanTGF(frame);
  SX_BIND(SX_DeleteEXENTRY);
  return fpProc != nullptr ? fpProc(frame, index, count, version) : short{0};
}

void SX_ReduceEntries(EXTGF2005a* frame, unsigned int version) {
  CleanTGF(frame);
  SX_BIND(SX_ReduceEntries);
  if (fpProc != nullptr) fpProc(frame, version);
}
