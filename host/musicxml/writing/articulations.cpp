#include "host/musicxml/writing/articulations.h"

#include "SokExtShared/SokEDK/Source/record_tags.h"
#include "host/musicxml/frames.h"

namespace sok {
namespace {

struct Sign {
  short character;
  const char* element;
};
constexpr Sign kSigns[] = {
    {'.', "staccato"}, {'>', "accent"}, {'^', "strong-accent"}, {'-', "tenuto"}, {',', "breath-mark"},
};

const char* ElementOf(const Document& document, short definition) {
  EDataID id{};
  id.other.cmper = static_cast<unsigned short>(definition);
  short character = 0;
  int size = sizeof character;
  if (!document.records.Load(record_tags::kArticulationDefinition, id, &character, &size)) return nullptr;
  for (const Sign& sign : kSigns) {
    if (sign.character == character) return sign.element;
  }
  return nullptr;
}

}  // namespace

std::optional<std::vector<std::string>> ArticulationsOn(const Document& document, int entry) {
  std::vector<std::string> elements;
  EDataID id{};
  id.entryDetail.entryNum = entry;
  short definition = 0;
  for (int size = sizeof definition; document.records.Load(record_tags::kArticulation, id, &definition, &size);
       size = sizeof definition, ++id.entryDetail.subIndex) {
    const char* element = ElementOf(document, definition);
    if (element == nullptr) return std::nullopt;
    elements.emplace_back(element);
  }
  return elements;
}

}  // namespace sok
