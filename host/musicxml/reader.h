// From the text of a score to the model.
#pragma once

#include <pugixml.hpp>
#include <string_view>

#include "host/musicxml/model.h"
#include "host/musicxml/reader_context.h"

namespace sok {

// What is wrong with a text, and where.
struct TextError : std::runtime_error {
  TextError(std::size_t at, const std::string& reason) : std::runtime_error(reason), offset(at) {}
  std::size_t offset;
};

// The parsed text and where its notes went, for whoever reads more out of it than the music.
struct ParsedScore {
  pugi::xml_document document;
  pugi::xml_node root;
  std::vector<MeasureNode> nodes;
  std::unordered_map<std::ptrdiff_t, int> entry_numbers;
  std::unordered_map<std::ptrdiff_t, int> positions;
};

// `text` is UTF-8. With `parsed` the whole tree is kept there, else there is never one. Throws TextError.
Model ReadModel(std::string_view text, const ReadOptions& options, ParsedScore* parsed = nullptr);

// One measure of one part read alone: a model of one part with one measure.
Model ReadCell(std::string_view cell, const Fraction& divisions, const ReadOptions& options);

}  // namespace sok
