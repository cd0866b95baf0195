// The record calls of the host interface over a document: its stored records, and two tags that are views of other
// data.
//
//   'SOSC'  the staff spec in force at a point: the 'SOIS' record of the instrument in cmper. Can only be loaded.
//   'eteE'  an entry of a frame by its number, 52 bytes: the first 46 bytes of its EXENTRY (its number to its third
//           note record) and 6 zero bytes. Can be loaded, stepped through by number, and saved: a save changes an entry
//           that exists, all but its number.
//
// Results and arguments are those of RecordStore. A change marks the document as dirty.
#pragma once

#include "host/engine/document.h"

namespace sok {

bool LoadRecord(const Document& document, unsigned int tag, const EDataID& id, void* buffer, int* size);
bool SaveRecord(Document& document, unsigned int tag, const EDataID& id, const void* buffer, int size);
bool CreateRecord(Document& document, unsigned int tag, EDataID& id, const void* buffer, int size);
bool DeleteRecord(Document& document, unsigned int tag, const EDataID& id);
bool PreviousRecord(const Document& document, unsigned int tag, EDataID& id, void* buffer, int size);
bool NextRecord(const Document& document, unsigned int tag, EDataID& id, void* buffer, int size);

}  // namespace sok
