#include "SokExtShared/LIB/records/typed_records.h"

#include <cstring>

#include "SokExtShared/LIB/records/record_calls.h"
#include "SokExtShared/SokEDK/Source/record_tags.h"

using namespace record_calls;
using namespace record_tags;

namespace {

constexpr short kFirstRecord = -1;  // matches an entry's first accidental change, whatever it is

enum class Search { kFound, kEnded, kGivenUp };

template <typename Record>
short FirstWord(const Record& record) {
  short word;
  std::memcpy(&word, &record, sizeof word);
  return word;
}

// Loads an entry's records from subIndex 0 upwards, `limit` at most, until `matches(record, subIndex)`. `found` is
// written for a match only.
template <typename Record, typename Matches>
Search FindRecord(unsigned int tag, int entryNum, short limit, Record& record, short& found, Matches matches) {
  for (short subIndex = 0; subIndex < limit; ++subIndex) {
    if (!Load(tag, EntryDetailKey(entryNum, subIndex), record)) return Search::kEnded;
    if (matches(subIndex)) {
      found = subIndex;
      return Search::kFound;
    }
  }
  return Search::kGivenUp;
}

// The later records move down at every delete.
bool DeleteAll(unsigned int tag, int entryNum) {
  while (Delete(tag, EntryDetailKey(entryNum, 0))) {
  }
  return false;
}

template <bool Step(unsigned int, EDataID&, void*, int)>
bool StepEntry(int& entryNum, EDTEntry& record) {
  EDataID id = EntryKey(entryNum);
  const bool found = Step(kEntry, id, &record, sizeof record);
  entryNum = id.entry.entryNum;
  return found;
}

}  // namespace

bool sx_loadIU(unsigned short cmper, short subIndex, EDTInstrumentUsed& record) {
  return Load(kInstrumentUsed, OtherKey(cmper, subIndex), record);
}
bool sx_saveIU(unsigned short cmper, short subIndex, EDTInstrumentUsed record) {
  return Save(kInstrumentUsed, OtherKey(cmper, subIndex), record);
}
bool sx_deleteIU(unsigned short cmper, short subIndex) { return Delete(kInstrumentUsed, OtherKey(cmper, subIndex)); }

bool sx_loadstaffsystemspec(short cmper, EDTStaffSystemSpec2005& record) {
  return Load(kStaffSystem, OtherKey(cmper, 0), record);
}
bool sx_savestaffsystemspec(short cmper, EDTStaffSystemSpec2005 record) {
  return Save(kStaffSystem, OtherKey(cmper, 0), record);
}

bool sx_loadgroupspec(unsigned short cmper, short secondCmper, EDTGroupSpec& record) {
  return Load(kGroup, DetailKey(cmper, secondCmper, 0), record);
}
bool sx_savegroupspec(unsigned short cmper, short secondCmper, const EDTGroupSpec& record) {
  return Save(kGroup, DetailKey(cmper, secondCmper, 0), record);
}
bool sx_deletegroupspec(unsigned short cmper, short secondCmper) {
  return Delete(kGroup, DetailKey(cmper, secondCmper, 0));
}

bool sx_loadnoteheadmod(int entryNum, short wanted, EDTNoteheadMods2012& record, short& found, unsigned int tag) {
  const Search result =
      FindRecord(tag, entryNum, 1000, record, found, [&](short) { return FirstWord(record) == wanted; });
  if (result == Search::kEnded) record = {};
  return result == Search::kFound;
}
bool sx_savenoteheadmod(int entryNum, EDTNoteheadMods2012 record, short subIndex, unsigned int tag) {
  return Save(tag, EntryDetailKey(entryNum, subIndex), record);
}
bool sx_addnoteheadmod(int entryNum, EDTNoteheadMods2012 record, unsigned int tag) {
  return Create(tag, EntryDetailKey(entryNum, EDataID::kHostChooses), record);
}
bool sx_deletenoteheadmod(int entryNum, unsigned int tag) { return DeleteAll(tag, entryNum); }

bool sx_loadaccidentalmod(int entryNum, short wanted, EDTAccidentalMods2012& record, short& found) {
  return FindRecord(kAccidental, entryNum, 1000, record, found, [&](short subIndex) {
           return FirstWord(record) == wanted || (subIndex == 0 && wanted == kFirstRecord);
         }) == Search::kFound;
}
bool sx_saveaccidentalmod(int entryNum, EDTAccidentalMods2012 record, short subIndex) {
  return Save(kAccidental, EntryDetailKey(entryNum, subIndex), record);
}
bool sx_addaccidentalmod(int entryNum, EDTAccidentalMods2012 record) {
  return Create(kAccidental, EntryDetailKey(entryNum, EDataID::kHostChooses), record);
}
bool sx_deleteaccidentalmod(int entryNum) { return DeleteAll(kAccidental, entryNum); }

bool sx_loadtiealteration(unsigned int tag, int entryNum, short wanted, EDTTieAltRecord& record, short& found) {
  return FindRecord(tag, entryNum, 20, record, found, [&](short) { return FirstWord(record) == wanted; }) ==
         Search::kFound;
}
bool sx_savetiealteration(unsigned int tag, int entryNum, EDTTieAltRecord record, short subIndex) {
  return Save(tag, EntryDetailKey(entryNum, subIndex), record);
}

bool sx_loadsecbeambreak(int entryNum, EDTSecBeamBreak& record) {
  return Load(kSecondaryBeamBreak, EntryDetailKey(entryNum, 0), record);
}
bool sx_savesecbeambreak(int entryNum, EDTSecBeamBreak& record) {
  return Save(kSecondaryBeamBreak, EntryDetailKey(entryNum, 0), record);
}
bool sx_deletesecbeambreak(int entryNum) { return Delete(kSecondaryBeamBreak, EntryDetailKey(entryNum, 0)); }

bool sx_loadtextexpression(short cmper, char* buffer, int& size, unsigned int) {
  const EDataID id = OtherKey(cmper, 0);
  return SX_LoadEData(kTextExpression, &id, buffer, &size, kInterfaceVersion) != 0;
}
bool sx_savetextexpression(short cmper, char* buffer, int size, unsigned int) {
  return Save(kTextExpression, OtherKey(cmper, 0), buffer, size);
}
bool sx_deletetextexpression(short cmper) { return Delete(kTextExpression, OtherKey(cmper, 0)); }

bool sx_loadenclosure(short cmper, EDTEnclosure& record) { return Load(kEnclosure, OtherKey(cmper, 0), record); }
bool sx_saveenclosure(short cmper, EDTEnclosure record) { return Save(kEnclosure, OtherKey(cmper, 0), record); }
bool sx_deleteenclosure(short cmper) { return Delete(kEnclosure, OtherKey(cmper, 0)); }

bool sx_loadmeasurespec(short cmper, EDTMeasureSpec2014& record) { return Load(kMeasure, OtherKey(cmper, 0), record); }
bool sx_savemeasurespec(short cmper, EDTMeasureSpec2014& record) { return Save(kMeasure, OtherKey(cmper, 0), record); }

bool sx_loadscoreexpression2009(short cmper, short subIndex, EDTScoreExpression2009& record) {
  return Load(kScoreExpression, OtherKey(cmper, subIndex), record, EDTScoreExpression2009::kVersion);
}
bool sx_savescoreexpression2009(short cmper, short subIndex, EDTScoreExpression2009& record) {
  return Save(kScoreExpression, OtherKey(cmper, subIndex), record, EDTScoreExpression2009::kVersion);
}

bool sx_loadshortcut(short cmper, EDTShortcut& record, unsigned int tag) {
  return Load(tag, OtherKey(cmper, 0), record);
}
bool sx_saveshortcut(short cmper, EDTShortcut& record, unsigned int tag) {
  return Save(tag, OtherKey(cmper, 0), record);
}
bool sx_deleteshortcut(short cmper, unsigned int tag) { return Delete(tag, OtherKey(cmper, 0)); }

bool sx_loadtuplet(int entryNum, short subIndex, EDTTuplet2005& record) {
  return Load(kTuplet, EntryDetailKey(entryNum, subIndex), record);
}
bool sx_savetuplet(int entryNum, short subIndex, EDTTuplet2005& record) {
  return Save(kTuplet, EntryDetailKey(entryNum, subIndex), record);
}
bool sx_createtuplet(int entryNum, short& subIndex, EDTTuplet2005& record) {
  EDataID id = EntryDetailKey(entryNum, subIndex);
  const bool created = Create(kTuplet, id, &record, sizeof record);
  subIndex = id.entryDetail.subIndex;
  return created;
}

bool sx_loadcurrstaffspec(int cmper, int secondCmper, int extraValue, EDTStaffSpec2014& record) {
  return Load(kStaffInForce, StaffInForceKey(cmper, secondCmper, extraValue), record);
}

bool sx_loadentry(int entryNum, EDTEntry& record) { return Load(kEntry, EntryKey(entryNum), record); }
bool sx_saveentry(int entryNum, const EDTEntry& record) { return Save(kEntry, EntryKey(entryNum), record); }
bool sx_nextentry(int& entryNum, EDTEntry& record) { return StepEntry<Next>(entryNum, record); }
bool sx_preventry(int& entryNum, EDTEntry& record) { return StepEntry<Previous>(entryNum, record); }

int SafeGetMeasureDuration(short inst, short measure) {
  const int duration = SX_GetMeasureDuration(inst, measure, kInterfaceVersion);
  return duration != 0 ? duration : 4096;
}
