#include "host/musicxml/document_data.h"

namespace sok {

void ReadDocumentData([[maybe_unused]] const ReaderContext& context) {}

}  // namespace sok
