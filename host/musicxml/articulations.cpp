#include "host/musicxml/articulations.h"

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
  if (!document.records.Load(kDefinitionTag, id, &character, &size)) return nullptr;
  for (const Sign& sign : kSigns) {
    if (sign.character == character) return sign.element;
  }
  return nullptr;
}

}  // namespace

std::optional<std::vector<AddedArticulations>> FindArticulations(const Document& document, std::vector<EXENTRY> before,
                                                                 const std::vector<EXENTRY>& after) {
  if (before.size() != after.size()) return std::nullopt;
  std::vector<AddedArticulations> added;
  for (std::size_t i = 0; i < after.size(); ++i) {
    const bool marked = (after[i].flags & ~before[i].flags & kEntryHasArticulations) != 0;
    if (marked) before[i].flags |= kEntryHasArticulations;
    if (!SameMusic(before[i], after[i])) return std::nullopt;
    if (!marked) continue;
    EDataID id{};
    id.entryDetail.entryNum = after[i].number;
    AddedArticulations& signs = added.emplace_back(AddedArticulations{i, {}});
    short definition = 0;
    for (int size = sizeof definition; document.records.Load(kAssignmentTag, id, &definition, &size);
         size = sizeof definition, ++id.entryDetail.subIndex) {
      const char* element = ElementOf(document, definition);
      if (element == nullptr) return std::nullopt;
      signs.elements.emplace_back(element);
    }
  }
  return added;
}

}  // namespace sok
