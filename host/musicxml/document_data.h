// What a score holds beside its music, as records: layout, words, lines.
#pragma once

#include "host/musicxml/reader_context.h"

namespace sok {

// Calls every reader of such data. Each has a header and a source of its own, and a line here.
void ReadDocumentData(const ReaderContext& context);

}  // namespace sok
