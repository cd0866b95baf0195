#include "host/musicxml/document_data.h"

#include "host/musicxml/texts.h"

namespace sok {

void ReadDocumentData(const ReaderContext& context) { AddTexts(context); }

}  // namespace sok
