/// @file
/// Typed record helpers: load, save, create and delete the records of one type by plain numbers.
///
/// Unless stated, each makes one record call of record_access.h with the type's own tag, size and key, and returns true
/// when the host answered non-zero; numbers and results are as in generic_records.h. A failed load leaves the caller's
/// record as the host left it, unless stated. Records taken by value are sent as a copy.
#pragma once

#include "SokExtShared/LIB/records/generic_records.h"
#include "SokExtShared/SokEDK/Source/record_formats.h"

/// Instruments in use: a list `cmper`, the place in it `subIndex`.
///@{
bool sx_loadIU(unsigned short cmper, short subIndex, EDTInstrumentUsed& record);
bool sx_saveIU(unsigned short cmper, short subIndex, EDTInstrumentUsed record);
bool sx_deleteIU(unsigned short cmper, short subIndex);
///@}

/// Staff system specs by number.
///@{
bool sx_loadstaffsystemspec(short cmper, EDTStaffSystemSpec2005& record);
bool sx_savestaffsystemspec(short cmper, EDTStaffSystemSpec2005 record);
///@}

/// Group specs by their two numbers.
///@{
bool sx_loadgroupspec(unsigned short cmper, short secondCmper, EDTGroupSpec& record);
bool sx_savegroupspec(unsigned short cmper, short secondCmper, const EDTGroupSpec& record);
bool sx_deletegroupspec(unsigned short cmper, short secondCmper);
///@}

/// Notehead changes of an entry's notes, one record a note, in any order; the tag is the caller's.
/// The load looks through the entry's records from subIndex 0, 1000 at most, for one whose first 16-bit word is
/// `wanted`. Found: true, and `found` is its subIndex. Not found: `found` keeps its value, and the record is all zero;
/// after 1000 others it holds the last of them.
///@{
bool sx_loadnoteheadmod(int entryNum, short wanted, EDTNoteheadMods2012& record, short& found, unsigned int tag);
bool sx_savenoteheadmod(int entryNum, EDTNoteheadMods2012 record, short subIndex, unsigned int tag);
///@}
/// Adds a record behind the entry's others; its subIndex is not reported.
bool sx_addnoteheadmod(int entryNum, EDTNoteheadMods2012 record, unsigned int tag);
/// Deletes every record of the entry: subIndex 0 again and again until the host refuses. Always false.
bool sx_deletenoteheadmod(int entryNum, unsigned int tag);

/// Accidental changes of an entry's notes, likewise with as many calls; but a `wanted` of -1 takes the entry's first
/// record whatever it is, and a search that ends at a failed load leaves the record as that load left it.
///@{
bool sx_loadaccidentalmod(int entryNum, short wanted, EDTAccidentalMods2012& record, short& found);
bool sx_saveaccidentalmod(int entryNum, EDTAccidentalMods2012 record, short subIndex);
bool sx_addaccidentalmod(int entryNum, EDTAccidentalMods2012 record);
bool sx_deleteaccidentalmod(int entryNum);
///@}

/// Tie alterations of an entry's notes; the tag is the caller's. The search gives up after 20 records, and leaves the
/// record as the last load left it.
///@{
bool sx_loadtiealteration(unsigned int tag, int entryNum, short wanted, EDTTieAltRecord& record, short& found);
bool sx_savetiealteration(unsigned int tag, int entryNum, EDTTieAltRecord record, short subIndex);
///@}

/// Breaks in the secondary beams of an entry.
///@{
bool sx_loadsecbeambreak(int entryNum, EDTSecBeamBreak& record);
bool sx_savesecbeambreak(int entryNum, EDTSecBeamBreak& record);
bool sx_deletesecbeambreak(int entryNum);
///@}

/// Text expression definitions vary in size: `size` holds the buffer's on entry and the record's on return. The last
/// parameter has no effect.
///@{
bool sx_loadtextexpression(short cmper, char* buffer, int& size, unsigned int);
bool sx_savetextexpression(short cmper, char* buffer, int size, unsigned int);
bool sx_deletetextexpression(short cmper);
///@}

/// Enclosures by number.
///@{
bool sx_loadenclosure(short cmper, EDTEnclosure& record);
bool sx_saveenclosure(short cmper, EDTEnclosure record);
bool sx_deleteenclosure(short cmper);
///@}

/// Measures by number.
///@{
bool sx_loadmeasurespec(short cmper, EDTMeasureSpec2014& record);
bool sx_savemeasurespec(short cmper, EDTMeasureSpec2014& record);
///@}

/// These two pass the interface version 0x0E000000, with which the host keeps to the layout of that time.
///@{
bool sx_loadscoreexpression2009(short cmper, short subIndex, EDTScoreExpression2009& record);
bool sx_savescoreexpression2009(short cmper, short subIndex, EDTScoreExpression2009& record);
///@}

/// Shortcuts; the tag is the caller's.
///@{
bool sx_loadshortcut(short cmper, EDTShortcut& record, unsigned int tag);
bool sx_saveshortcut(short cmper, EDTShortcut& record, unsigned int tag);
bool sx_deleteshortcut(short cmper, unsigned int tag);
///@}

/// Tuplets that start at an entry. The create takes -1 for a new subIndex and writes it back.
///@{
bool sx_loadtuplet(int entryNum, short subIndex, EDTTuplet2005& record);
bool sx_savetuplet(int entryNum, short subIndex, EDTTuplet2005& record);
bool sx_createtuplet(int entryNum, short& subIndex, EDTTuplet2005& record);
///@}

/// The staff spec in force at a point.
bool sx_loadcurrstaffspec(int cmper, int secondCmper, int extraValue, EDTStaffSpec2014& record);

/// Entries by number. The next and previous ones write the neighbour's number back.
///@{
bool sx_loadentry(int entryNum, EDTEntry& record);
bool sx_saveentry(int entryNum, const EDTEntry& record);
bool sx_nextentry(int& entryNum, EDTEntry& record);
bool sx_preventry(int& entryNum, EDTEntry& record);
///@}

/// The duration of a measure on an instrument, or, with instrument 0, in the score (SX_GetMeasureDuration), in duration
/// units (1024 a quarter note); 4096 when the host has none.
int SafeGetMeasureDuration(short inst, short measure);
