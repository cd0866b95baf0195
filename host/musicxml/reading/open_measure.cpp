#include "host/musicxml/reading/open_measure.h"

#include <map>

namespace sok {
namespace {

const PartMeasure& PartMeasureAt(const Model& model, int part, short measure) {
  return model.parts[static_cast<std::size_t>(part)].measures[static_cast<std::size_t>(measure - 1)];
}

// The notes of a voice have its entries' numbers in the order of the text.
std::vector<int> NumbersOf(const Part& part, const PartMeasure& cell, const std::vector<Item>& items) {
  std::map<std::pair<std::string_view, int>, std::uint32_t> next;  // by voice
  for (std::uint32_t i = 0; i < cell.voice_count; ++i) {
    const VoiceMeasure& voice = part.cells[cell.first_voice + i];
    const Voice& owner = part.voices[voice.voice];
    next[{owner.name, owner.key_staff}] = voice.first_entry;
  }
  std::vector<int> numbers(items.size(), 0);
  int last = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (items[i].kind != ItemKind::kNote) continue;
    if (!items[i].chord) last = static_cast<int>(++next.at({items[i].voice, items[i].key_staff}));
    numbers[i] = last;
  }
  return numbers;
}

}  // namespace

OpenMeasure::OpenMeasure(const Model& model, std::string_view text, int in_part, short in_measure, unsigned int parse)
    : cell(PartMeasureAt(model, in_part, in_measure)),
      part(in_part),
      measure(in_measure),
      begin(cell.offset),
      end(cell.offset + cell.size) {
  tree.load_buffer(text.data() + begin, end - begin, parse, pugi::encoding_utf8);
  parts.divisions = cell.divisions;
  parts.Read(tree.document_element(), begin);
  entries = NumbersOf(model.parts[static_cast<std::size_t>(part)], cell, parts.items);
}

}  // namespace sok
