#include "host/musicxml/reader.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "host/musicxml/cell_reader.h"

namespace sok {
namespace {

// Nothing is unescaped, joined or normalised that is not looked at; the text of an element without children is the
// element's own value, which makes the tree half as large.
constexpr unsigned int kMusicOnly = pugi::parse_escapes | pugi::parse_embed_pcdata;
constexpr int kMostMeasures = 32767;

std::string OneLine(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!IsXmlSpace(c)) result += c;
    else if (!result.empty() && result.back() != ' ') result += ' ';
  }
  while (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

class ScoreReader {
 public:
  ScoreReader(std::string_view text, const ReadOptions& options, ParsedScore* parsed)
      : text_(text), parsed_(parsed), lines_(text), cells_(model_, lines_, parsed) {
    model_.options = options;
  }

  Model Read(ParsedScore& tree) {
    Parse(tree);
    try {
      const bool timewise = std::strcmp(tree.root.name(), "score-timewise") == 0;
      timewise ? ReadTimewise(tree.root) : ReadPartwise(tree.root);
      FinishMeasures();
      AssignLayers(model_);
      WarnOfShortParts();
    } catch (const std::runtime_error& error) {  // numbers beyond all bounds
      throw TextError(static_cast<std::size_t>(std::max(at_.offset_debug(), std::ptrdiff_t{0})), error.what());
    }
    std::stable_sort(model_.warnings.begin(), model_.warnings.end(),
                     [](const Warning& a, const Warning& b) { return a.line < b.line; });
    return std::move(model_);
  }

 private:
  void Parse(ParsedScore& tree) {
    const unsigned int flags = parsed_ != nullptr ? pugi::parse_default : kMusicOnly;
    const pugi::xml_parse_result result = tree.document.load_buffer(text_.data(), text_.size(), flags, pugi::encoding_utf8);
    const auto offset = static_cast<std::size_t>(result.offset);
    switch (result.status) {
      case pugi::status_ok: break;
      case pugi::status_no_document_element: throw TextError(0, "not MusicXML: there is no XML element");
      case pugi::status_end_element_mismatch: throw TextError(offset, "elements do not end as they begin, or the text is cut off");
      default: throw TextError(offset, std::string("not well-formed XML: ") + result.description());
    }
    tree.root = tree.document.document_element();
    at_ = tree.root;
    const std::string_view name = tree.root.name();
    model_.form = name;
    if (name != "score-partwise" && name != "score-timewise") {
      throw TextError(static_cast<std::size_t>(tree.root.offset_debug()), "not a MusicXML score: the root element is <" + std::string(name) + ">");
    }
  }

  // Adds the parts named by `ids` (in order of the text) in order of the part list; parts it does not name come last.
  // The result maps the order of the text to the order of the parts.
  std::vector<int> AddParts(pugi::xml_node root, const std::vector<std::string>& ids) {
    std::unordered_map<std::string, std::pair<std::size_t, pugi::xml_node>> listed;
    for (const pugi::xml_node entry : root.child("part-list").children("score-part")) {
      listed.try_emplace(entry.attribute("id").value(), listed.size(), entry);
    }
    std::vector<std::size_t> order(ids.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    const auto rank = [&](std::size_t i) {
      const auto at = listed.find(ids[i]);
      return at == listed.end() ? listed.size() : at->second.first;
    };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
    std::vector<int> place(ids.size());
    for (const std::size_t i : order) {
      place[i] = static_cast<int>(model_.parts.size());
      Part& part = model_.parts.emplace_back();
      part.id = ids[i];
      const auto at = listed.find(ids[i]);
      if (at != listed.end()) {
        part.name = OneLine(at->second.second.child_value("part-name"));
        part.abbreviation = OneLine(at->second.second.child_value("part-abbreviation"));
      }
      if (part.name.empty()) part.name = part.id;
    }
    return place;
  }

  void ReadPartwise(pugi::xml_node root) {
    std::vector<std::string> ids;
    for (const pugi::xml_node part : root.children("part")) ids.emplace_back(part.attribute("id").value());
    const std::vector<int> place = AddParts(root, ids);
    std::size_t index = 0;
    for (const pugi::xml_node part : root.children("part")) {
      PartState state;
      const int to = place[index++];
      for (const pugi::xml_node measure : part.children("measure")) {
        const std::size_t position = model_.parts[static_cast<std::size_t>(to)].measures.size();
        ReadCell(to, state, measure, measure, position);
      }
      cells_.EndPart(to, state);
    }
  }

  void ReadTimewise(pugi::xml_node root) {
    std::vector<std::string> ids;
    std::unordered_map<std::string, std::size_t> known;
    for (const pugi::xml_node measure : root.children("measure")) {
      for (const pugi::xml_node part : measure.children("part")) {
        const std::string id = part.attribute("id").value();
        if (known.try_emplace(id, ids.size()).second) ids.push_back(id);
      }
    }
    const std::vector<int> place = AddParts(root, ids);
    std::vector<PartState> states(ids.size());
    std::size_t position = 0;
    for (const pugi::xml_node measure : root.children("measure")) {
      for (const pugi::xml_node part : measure.children("part")) {
        const std::size_t index = known.at(part.attribute("id").value());
        const std::size_t read = model_.parts[static_cast<std::size_t>(place[index])].measures.size();
        at_ = part;
        if (read != position) throw std::runtime_error("the part is missing in an earlier measure, or is there twice");
        ReadCell(place[index], states[index], part, measure, position);
      }
      ++position;
    }
    for (std::size_t i = 0; i < ids.size(); ++i) cells_.EndPart(place[i], states[i]);
  }

  void ReadCell(int part, PartState& state, pugi::xml_node cell, pugi::xml_node measure, std::size_t position) {
    at_ = cell;
    if (position == model_.measures.size()) {
      if (position == kMostMeasures) throw std::runtime_error("the score has more than 32767 measures");
      Measure& added = model_.measures.emplace_back();
      added.number = OneLine(measure.attribute("number").value());
      added.implicit = std::strcmp(measure.attribute("implicit").value(), "yes") == 0;
      times_.emplace_back();
      first_offsets_.push_back(static_cast<std::size_t>(measure.offset_debug()));
    }
    cells_.Read(part, state, cell);
    if (times_[position].IsZero()) times_[position] = state.time;
  }

  // A measure is as long as its furthest voice; nothing else tells it truly.
  void FinishMeasures() {
    for (std::size_t i = 0; i < model_.measures.size(); ++i) {
      Fraction& length = model_.lengths[i];
      if (length.IsZero()) {
        const bool timed = !times_[i].IsZero();
        length = timed ? times_[i] : Fraction{4, 1};
        model_.measures[i].length_assumed = true;
        model_.warnings.push_back({lines_.LineOf(first_offsets_[i]),
                                   "measure " + std::to_string(i + 1) + " holds nothing that takes time; it counts as long as " +
                                       (timed ? "its time signature says" : "4 quarters")});
      }
      model_.measures[i].duration = ToUnits(length);
    }
  }

  void WarnOfShortParts() {
    for (const Part& part : model_.parts) {
      if (part.measures.size() == model_.measures.size()) continue;
      model_.warnings.push_back({0, "part " + part.id + " has " + std::to_string(part.measures.size()) + " measures of " +
                                        std::to_string(model_.measures.size())});
    }
    for (const Part& part : model_.parts) {
      for (const Voice& voice : part.voices) {
        if (!voice.surplus) continue;
        model_.warnings.push_back({0, "part " + part.id + ", staff " + std::to_string(voice.home) + ": voice " + voice.name +
                                          " is one more than there are layers and counts to the last layer"});
      }
    }
  }

  std::string_view text_;
  ParsedScore* parsed_;
  Model model_;
  LineTable lines_;
  CellReader cells_;
  pugi::xml_node at_;
  std::vector<Fraction> times_;  // by the time signature, by measure
  std::vector<std::size_t> first_offsets_;
};

}  // namespace

Model ReadModel(std::string_view text, const ReadOptions& options, ParsedScore* parsed) {
  ParsedScore own;
  return ScoreReader(text, options, parsed).Read(parsed != nullptr ? *parsed : own);
}

}  // namespace sok
