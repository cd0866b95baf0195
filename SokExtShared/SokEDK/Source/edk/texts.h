/// @file
/// Texts as eu16string, in and out: the bundle's own, alerts, and what the score says.
///
/// Every result is a string of the caller's own; the kit's shared buffers are read at once. What the host does not have
/// comes out empty.
#pragma once

#include <algorithm>
#include <array>
#include <iterator>

#include "SokExtShared/LIB/PORTABLE/string_resources.h"
#include "SokExtShared/LIB/strings/eu16string.h"
#include "SokExtShared/LIB/strings/utf16_format.h"
#include "SokExtShared/LIB/text/caret_commands.h"
#include "SokExtShared/LIB/text/instrument_names.h"
#include "SokExtShared/LIB/text/measure_texts.h"
#include "SokExtShared/LIB/text/page_texts.h"
#include "SokExtShared/LIB/text/text_blocks.h"
#include "SokExtShared/SokEDK/Source/sonkelpdk/host_entry_points.h"

namespace edk {

/// Whether caret commands such as ^font(Times) stay in a text.
enum class Carets { kKeep, kStrip };

/// A copy of zero-terminated UTF-16; empty for null.
inline eu16string Copy(const unsigned short* text) {
  eu16string copy;
  if (text != nullptr) copy.assign(text);
  return copy;
}

/// A copy of a record's text, which need not be terminated when it fills its field.
template <std::size_t size>
eu16string CopyField(const unsigned short (&text)[size]) {
  eu16string copy;
  copy.assign(text, std::find(std::begin(text), std::end(text), 0));
  return copy;
}

/// A text of the bundle's Localizable.strings in the user's language, by its number; 1023 units at most. One that is
/// not there comes back as its number.
inline eu16string Text(int number) {
  std::array<unsigned short, 1024> buffer;
  return Copy(PlugIn_GetStringResource(number, buffer.data(), static_cast<short>(buffer.size())));
}

/// Fills in a format: %d for an int, %S for UTF-16 text such as `name.c_str()`; 1023 units at most.
template <typename... Arguments>
eu16string Formatted(const eu16string& format, Arguments... arguments) {
  std::array<unsigned short, 1024> buffer{};
  sx_sprintf(buffer.data(), buffer.size(), format.c_str(), arguments...);
  return Copy(buffer.data());
}

/// Shows an alert (SX_AlertMessage_UTF16).
inline void Alert(const eu16string& text) { SX_AlertMessage_UTF16(nullptr, 0, 0, text.c_str(), kInterfaceVersion); }

/// A text without its caret commands; ^flat() becomes "b", ^sharp() "#", a line's end a blank.
inline eu16string WithoutCarets(const eu16string& text) {
  eu16string stripped = text;
  txt_strip_carets(stripped.data());
  return Copy(stripped.c_str());
}

/// An instrument's name without caret commands; the other one where there is none.
///@{
inline eu16string InstrumentName(short inst) { return Copy(sx_getinstname_utf16(inst)); }
inline eu16string AbbreviatedInstrumentName(short inst) { return Copy(sx_getabbrevinstname_utf16(inst)); }
///@}

/// The text of a text block by its number, 999 units at most.
inline eu16string BlockText(short block, Carets carets = Carets::kKeep) {
  return Copy(sx_gettextblock2004_utf16(block, carets == Carets::kStrip, nullptr));
}

/// A new text block of the ordinary kind. Returns its number, -1 when the host refuses it; its characters may be there
/// without it then.
inline short CreateTextBlock(const eu16string& text) {
  EDTTextBlock2004 block{};
  block.textID = -1;
  short number = -1;
  return sx_puttextblock2004(number, block, text.c_str()) ? number : short{-1};
}

}  // namespace edk
