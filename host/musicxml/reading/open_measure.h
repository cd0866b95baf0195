// One measure of one part of a score that has been read, opened again in its text.
#pragma once

#include <pugixml.hpp>
#include <string_view>
#include <vector>

#include "host/musicxml/model.h"
#include "host/musicxml/reading/measure_items.h"

namespace sok {

struct OpenMeasure {
  OpenMeasure(const Model& model, std::string_view text, int part, short measure, unsigned int parse = kMusicOnly);
  OpenMeasure(const OpenMeasure&) = delete;
  OpenMeasure& operator=(const OpenMeasure&) = delete;

  const PartMeasure& cell;
  const int part;       // index
  const short measure;  // from 1
  std::size_t begin;    // of its '<' in the text
  std::size_t end;
  pugi::xml_document tree;
  MeasureItems parts;
  std::vector<int> entries;  // by item: the number of the note's entry, else 0
};

}  // namespace sok
