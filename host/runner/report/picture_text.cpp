#include "host/runner/report/picture_text.h"

#include <iterator>
#include <map>
#include <pugixml.hpp>
#include <set>
#include <sstream>
#include <string_view>

namespace sok {
namespace {

std::string Raw(const pugi::xml_node& node) {
  std::ostringstream out;
  node.print(out, "", pugi::format_raw);
  return out.str();
}

// Turns measures of parts into parts of measures.
void TurnToParts(pugi::xml_document& score) {
  pugi::xml_document partwise;
  pugi::xml_node root = partwise.append_child("score-partwise");
  std::map<std::string, pugi::xml_node> parts;
  for (const pugi::xml_node child : score.child("score-timewise")) {
    if (std::string_view(child.name()) != "measure") {
      root.append_copy(child);
      continue;
    }
    for (const pugi::xml_node part : child.children("part")) {
      pugi::xml_node& target = parts[part.attribute("id").value()];
      if (!target) {
        target = root.append_child("part");
        target.append_copy(part.attribute("id"));
      }
      pugi::xml_node measure = target.append_child("measure");
      for (const pugi::xml_attribute attribute : child.attributes()) measure.append_copy(attribute);
      for (const pugi::xml_node music : part) measure.append_copy(music);
    }
  }
  score.reset(partwise);
}

// The text is UTF-8 whatever its declaration says; the engraver gets it without one.
void Load(pugi::xml_document& document, const std::string& text) {
  document.load_string(text.c_str());
  if (document.child("score-timewise")) TurnToParts(document);
}

struct PartMeasure {
  int part;  // from 0
  short measure;
  auto operator<=>(const PartMeasure&) const = default;
};
using ChangedStaves = std::map<PartMeasure, std::set<int>>;  // by their numbers in the part

ChangedStaves StavesOf(const Score& score, const std::vector<Change>& changes) {
  ChangedStaves staves;
  for (const Change& change : changes) {
    const Staff& staff = score.staves()[static_cast<std::size_t>(change.slot - 1)];
    staves[{staff.part, change.measure}].insert(staff.staff);
  }
  return staves;
}

// By part, then position.
using Measures = std::vector<std::vector<pugi::xml_node>>;

Measures MeasuresOf(const pugi::xml_document& document) {
  Measures measures;
  for (const pugi::xml_node part : document.child("score-partwise").children("part")) {
    const auto all = part.children("measure");
    measures.emplace_back(all.begin(), all.end());
  }
  return measures;
}

pugi::xml_node Find(const Measures& measures, const PartMeasure& place) {
  const auto part = static_cast<std::size_t>(place.part), measure = static_cast<std::size_t>(place.measure - 1);
  return part < measures.size() && measure < measures[part].size() ? measures[part][measure] : pugi::xml_node();
}

std::multiset<std::string> NoteTexts(const pugi::xml_node& measure) {
  std::multiset<std::string> texts;
  for (const pugi::xml_node note : measure.children("note")) texts.insert(Raw(note));
  return texts;
}

// Names the notes of some staves that `others` does not have.
void NameNotes(const pugi::xml_node& measure, const std::set<int>& staves, std::multiset<std::string> others,
               const std::string& name, int& number) {
  for (pugi::xml_node note : measure.children("note")) {
    if (!staves.contains(note.child("staff").text().as_int(1))) continue;
    const auto same = others.find(Raw(note));
    if (same != others.end()) {
      others.erase(same);
      continue;
    }
    note.remove_attribute("id");
    note.append_attribute("id") = (name + std::to_string(++number)).c_str();
  }
}

}  // namespace

PictureTexts NameChangedNotes(const Score& score, const std::string& text_after, const std::vector<Change>& changes) {
  pugi::xml_document before, after;
  Load(before, score.Text());
  Load(after, text_after);
  const Measures old_measures = MeasuresOf(before), new_measures = MeasuresOf(after);
  int number = 0;
  for (const auto& [place, staves] : StavesOf(score, changes)) {
    const pugi::xml_node was = Find(old_measures, place), is = Find(new_measures, place);
    const std::multiset<std::string> old_notes = NoteTexts(was), new_notes = NoteTexts(is);
    NameNotes(was, staves, new_notes, "sok-went-", number);
    NameNotes(is, staves, old_notes, "sok-came-", number);
  }
  return {Raw(before), Raw(after)};
}

}  // namespace sok
