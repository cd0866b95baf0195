// The words of a score as the document's text records.
//
// The characters and the formatting of a text are two records, raw text ('txbl') and text block ('SOTX'); a third one
// names the block: the instrument's ('SOIS', names at byte 30 and 32), a page text ('O', 2, 'pT') or a measure text
// ('dtmt'). Formatting is caret commands inside the characters: ^font(Times)^size(12)^efx(bold,italic)Viola.
#pragma once

#include <string>
#include <string_view>

#include "host/musicxml/reader_context.h"

namespace sok {

inline constexpr unsigned int kRawTextTag = 0x7478626C;      // key: text number, 0
inline constexpr unsigned int kTextBlockTag = 0x534F5458;    // key: block number, 0
inline constexpr unsigned int kPageTextTag = 0x4F027054;     // key: page, index on that page
inline constexpr unsigned int kMeasureTextTag = 0x64746D74;  // key: instrument, measure, index at that place
inline constexpr std::size_t kFullName = 30;                 // where an instrument's record names its blocks
inline constexpr std::size_t kAbbreviatedName = 32;

// Adds the names of the instruments and the credits (of a score without any: title, creators and rights). Every staff
// of a part has the part's names. A text for which there is no number left is left out.
void AddTexts(const ReaderContext& context);
// Adds the words of the directions in one measure (from 1) of a part (its index).
void AddMeasureTexts(const ReaderContext& context, pugi::xml_node node, int part, short measure);

// What a UTF-8 text with caret commands reads as: commands left out, but for "b" and "#" in place of ^flat() and
// ^sharp(), and spaces for line breaks.
std::string WithoutCommands(std::string_view text);

}  // namespace sok
