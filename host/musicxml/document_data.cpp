#include "host/musicxml/document_data.h"

#include "host/musicxml/preferences.h"
#include "host/musicxml/shapes.h"
#include "host/musicxml/texts.h"

namespace sok {

void ReadDocumentData(const ReaderContext& context) {
  AddPreferences(context);
  AddTexts(context);
  AddShapes(context);
}

}  // namespace sok
