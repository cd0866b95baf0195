#include "host/musicxml/reading/reader.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "host/errors.h"
#include "host/musicxml/limits.h"
#include "host/musicxml/reading/measure_reader.h"
#include "host/musicxml/text/markup.h"
#include "host/musicxml/text/skeleton.h"

namespace sok {
namespace {

std::string OneLine(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!IsXmlSpace(c)) {
      result += c;
    } else if (!result.empty() && result.back() != ' ') {
      result += ' ';
    }
  }
  while (!result.empty() && result.back() == ' ') result.pop_back();
  return result;
}

class ScoreReader {
 public:
  ScoreReader(std::string_view text, const ReadOptions& options) : text_(text), lines_(text), cells_(model_, lines_) {
    model_.options = options;
  }

  Model Read() {
    const pugi::xml_node root = Parse();
    try {
      model_.form == "score-timewise" ? ReadTimewise(root) : ReadPartwise(root);
      CheckSize();
      FinishMeasures();
      AssignLayers(model_);
      WarnOfShortParts();
    } catch (const Error& error) {  // numbers beyond all bounds
      throw TextError(at_, error.what());
    }
    std::stable_sort(model_.warnings.begin(), model_.warnings.end(),
                     [](const Warning& a, const Warning& b) { return a.line < b.line; });
    return std::move(model_);
  }

 private:
  // The root of the skeleton, or of everything where the skeleton cannot be made.
  pugi::xml_node Parse() {
    if (std::optional<Skeleton> skeleton = SkeletonOf(text_)) {
      skeleton_ = std::move(skeleton->text);
      if (model_.options.document_data) model_.head = skeleton_;
      cell_places_ = std::move(skeleton->cells);
      if (tree_.load_buffer_inplace(skeleton_.data(), skeleton_.size(), kMusicOnly, pugi::encoding_utf8)) {
        const pugi::xml_node root = tree_.document_element();
        model_.form = root.name();
        return root;
      }
      cell_places_.clear();
      model_.head.clear();
    }
    RefuseTagsInTags();
    Check(tree_.load_buffer(text_.data(), text_.size(), kMusicOnly, pugi::encoding_utf8), 0);
    const pugi::xml_node root = tree_.document_element();
    model_.form = root.name();
    if (model_.form != "score-partwise" && model_.form != "score-timewise") {
      throw TextError(static_cast<std::size_t>(root.offset_debug()),
                      "not a MusicXML score: the root element is <" + model_.form + ">");
    }
    return root;
  }

  // A '<' in an attribute, which the parser lets pass, can hide where an element ends.
  void RefuseTagsInTags() const {
    for (std::size_t at = text_.find('<'); at != std::string_view::npos;) {
      const std::string_view tag = text_.substr(at, MarkupEnd(text_, at) - at);
      const bool element = !tag.starts_with("<!") && !tag.starts_with("<?");
      if (element && tag.find('<', 1) != std::string_view::npos) {
        throw TextError(at, "not well-formed XML: a tag holds a '<'");
      }
      at = text_.find('<', at + tag.size());
    }
  }

  static void Check(const pugi::xml_parse_result& result, std::size_t base) {
    const std::size_t offset = base + static_cast<std::size_t>(std::max(result.offset, std::ptrdiff_t{0}));
    switch (result.status) {
      case pugi::status_ok:
        break;
      case pugi::status_no_document_element:
        throw TextError(offset, "not MusicXML: there is no XML element");
      case pugi::status_end_element_mismatch:
        throw TextError(offset, "elements do not end as they begin, or the text is cut off");
      default:
        throw TextError(offset, std::string("not well-formed XML: ") + result.description());
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
        ReadNext(to, state, measure, measure, position);
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
        if (read != position) throw Error("the part is missing in an earlier measure, or is there twice");
        ReadNext(place[index], states[index], part, measure, position);
      }
      ++position;
    }
    for (std::size_t i = 0; i < ids.size(); ++i) cells_.EndPart(place[i], states[i]);
  }

  void ReadNext(int part, PartState& state, pugi::xml_node cell, pugi::xml_node measure, std::size_t position) {
    const bool whole = cell_places_.empty();
    const Skeleton::Range place = whole ? Skeleton::Range() : cell_places_[next_cell_++];
    at_ = whole ? static_cast<std::size_t>(cell.offset_debug()) : place.begin;
    if (position == model_.measures.size()) {
      if (position == kMostMeasures) {
        throw Error("the score has more than " + std::to_string(kMostMeasures) + " measures");
      }
      Measure& added = model_.measures.emplace_back();
      added.number = OneLine(measure.attribute("number").value());
      added.implicit = std::strcmp(measure.attribute("implicit").value(), "yes") == 0;
      model_.times.emplace_back();
      first_offsets_.push_back(at_);
    }
    if (whole) {
      cells_.Read(part, state, cell, 0, ElementEnd(text_, at_ - 1) - (at_ - 1));
    } else {
      cell_text_.assign(text_, place.begin, place.end - place.begin);
      Check(cell_tree_.load_buffer_inplace(cell_text_.data(), cell_text_.size(), kMusicOnly, pugi::encoding_utf8),
            place.begin);
      if (cell_tree_.first_child().next_sibling()) throw TextError(place.begin, "not well-formed XML");
      cells_.Read(part, state, cell_tree_.document_element(), place.begin, place.end - place.begin);
    }
    if (model_.times[position].IsZero()) model_.times[position] = state.time;
  }

  void CheckSize() const {
    std::uint64_t staves = 0;
    for (const Part& part : model_.parts) staves += static_cast<std::uint64_t>(part.staves);
    if (staves > kMostStavesInAll) {
      throw Error("the score has " + std::to_string(staves) + " staves, more than " + std::to_string(kMostStavesInAll));
    }
    const std::uint64_t cells = staves * model_.measures.size();
    if (cells > kMostStaffMeasures) {
      throw Error("the score has " + std::to_string(staves) + " staves of " + std::to_string(model_.measures.size()) +
                  " measures; the two numbers' product may be " + std::to_string(kMostStaffMeasures));
    }
  }

  // A measure is as long as its furthest voice; nothing else tells it truly.
  void FinishMeasures() {
    for (std::size_t i = 0; i < model_.measures.size(); ++i) {
      Fraction& length = model_.lengths[i];
      if (length.IsZero()) {
        const bool timed = !model_.times[i].IsZero();
        length = timed ? model_.times[i] : Fraction{4, 1};
        model_.measures[i].length_assumed = true;
        model_.warnings.push_back(
            {lines_.LineOf(first_offsets_[i]), MeasureLabel(model_.measures, i + 1) +
                                                   " holds nothing that takes time; it counts as long as " +
                                                   (timed ? "its time signature says" : "4 quarters")});
      }
      model_.measures[i].duration = ToUnits(length);
    }
  }

  void WarnOfShortParts() {
    for (const Part& part : model_.parts) {
      if (part.measures.size() == model_.measures.size()) continue;
      model_.warnings.push_back({0, "part " + part.id + " has " + std::to_string(part.measures.size()) + " of " +
                                        std::to_string(model_.measures.size()) + " measures"});
    }
    for (const Part& part : model_.parts) {
      for (const Voice& voice : part.voices) {
        for (const VoiceHome& home : voice.homes) {
          if (home.surplus) WarnOfSurplus(part, voice, home);
        }
      }
    }
  }

  void WarnOfSurplus(const Part& part, const Voice& voice, const VoiceHome& home) {
    model_.warnings.push_back({0, "part " + part.id + ", staff " + std::to_string(home.staff) + ": voice " +
                                      voice.name + " is one more than there are layers and counts to layer " +
                                      std::to_string(home.layer + 1)});
  }

  std::string_view text_;
  Model model_;
  LineTable lines_;
  MeasureReader cells_;
  std::size_t at_ = 0;  // where reading is, for messages
  std::string skeleton_;
  std::vector<Skeleton::Range> cell_places_;  // empty: the tree is whole
  std::size_t next_cell_ = 0;
  pugi::xml_document tree_;
  std::string cell_text_;
  pugi::xml_document cell_tree_;
  std::vector<std::size_t> first_offsets_;
};

}  // namespace

Model ReadModel(std::string_view text, const ReadOptions& options) { return ScoreReader(text, options).Read(); }

}  // namespace sok
