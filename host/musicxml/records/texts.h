// The words of a score as the document's text records.
//
// The characters and the formatting of a text are two records, raw text and text block; a third one names the block:
// the instrument's, a page text (key: page, place on it) or a measure text (key: instrument, measure, place there).
// Formatting is caret commands inside the characters: ^font(Times)^size(12)^efx(bold,italic)Viola.
#pragma once

#include <string>
#include <string_view>

#include "host/musicxml/records/reader_context.h"

namespace sok {

// Adds the names of the instruments and the credits (of a score without any: title, creators and rights). Every staff
// of a part has the part's names. A text for which there is no number left is left out.
void AddTexts(const ReaderContext& context);
// Adds the words of the directions in one measure (from 1) of a part (its index).
void AddMeasureTexts(const ReaderContext& context, pugi::xml_node node, int part, short measure);

// What a UTF-8 text with caret commands reads as: commands left out, but for "b" and "#" in place of ^flat() and
// ^sharp(), and spaces for line breaks.
std::string WithoutCommands(std::string_view text);

}  // namespace sok
