// What a score holds beside its music, as records: layout, words, lines, tuplets.
//
// This folder has a reader for each of these kinds.
#pragma once

#include <string_view>

#include "host/musicxml/model.h"
#include "host/musicxml/records/reader_context.h"

namespace sok {

// Fills in the document's records, from what stands around the measures and then from one measure after the other.
void ReadDocumentData(const Model& model, std::string_view text, Document& document);

}  // namespace sok
