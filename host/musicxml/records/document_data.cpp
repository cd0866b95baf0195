#include "host/musicxml/records/document_data.h"

#include "host/musicxml/records/preferences.h"
#include "host/musicxml/records/reader_context.h"
#include "host/musicxml/records/shapes.h"
#include "host/musicxml/records/texts.h"
#include "host/musicxml/records/tuplets.h"

namespace sok {

void ReadDocumentData(const Model& model, std::string_view text, Document& document) {
  const std::string_view around = model.head.empty() ? text : model.head;
  pugi::xml_document head;
  head.load_buffer(around.data(), around.size(), pugi::parse_default, pugi::encoding_utf8);
  const ReaderContext context{head.document_element(), document, model.staves, model.measures};
  AddPreferences(context);
  AddTexts(context);
  ShapeReader shapes(context);
  for (std::size_t part = 0; part < model.parts.size(); ++part) {
    for (std::size_t i = 1; i <= model.parts[part].measures.size(); ++i) {
      if (!model.parts[part].measures[i - 1].has_signs) continue;
      const OpenMeasure measure(model, text, static_cast<int>(part), static_cast<short>(i), pugi::parse_default);
      AddMeasureTexts(context, measure.tree.document_element(), measure.part, measure.measure);
      shapes.Read(measure);
      AddTuplets(context, measure);
    }
  }
  shapes.Finish();
}

}  // namespace sok
