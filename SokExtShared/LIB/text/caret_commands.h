/// @file
/// Caret commands: the formatting inside a text, such as ^font(Times), ^size(12), ^efx(bold,italic), ^flat().
///
/// What a text opens with is kept in the globals below for the whole time the plug-in is loaded. Not thread-safe.
#pragma once

/// The arguments of the font, size and style commands that came before the first ordinary character, zero-terminated
/// and cut to what fits. Font and size keep their value when a text does not open with such a command.
///@{
extern unsigned short ucaretfont[56];
extern unsigned short ucaretsize[16];
extern unsigned short ucaretefx[50];
///@}

/// The styles whose names ("bold", "italic", "underline") occur anywhere in an opening style command. Of several such
/// commands ucaretefx keeps the last, while the flags of all add up.
///@{
extern unsigned int uicaretefx;
inline constexpr unsigned int kCaretBold = 1;
inline constexpr unsigned int kCaretItalic = 2;
inline constexpr unsigned int kCaretUnderline = 4;
///@}

/// Removes every caret command from a zero-terminated UTF-16 text, in place. A command runs from its caret to the next
/// closing parenthesis, or to the end of the text. ^flat() leaves "b" and ^sharp() "#"; line feeds and carriage returns
/// become one space each. Calls nothing on the host.
void txt_strip_carets(unsigned short* text);
