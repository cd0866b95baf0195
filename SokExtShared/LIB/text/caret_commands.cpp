#include "SokExtShared/LIB/text/caret_commands.h"

#include <algorithm>
#include <cstddef>

#include "SokExtShared/LIB/strings/eu16string.h"
#include "SokExtShared/LIB/strings/unit_blocks.h"
#include "SokExtShared/LIB/strings/utf16_strings.h"

unsigned short ucaretfont[56];
unsigned short ucaretsize[16];
unsigned short ucaretefx[50];
unsigned int uicaretefx;

using unit_blocks::AnyOf4Is;
using unit_blocks::EndWithin8;

namespace {

// Keywords and style words, made into UTF-16 once.
struct Words {
  eu16string font = "font";
  eu16string size = "size";
  eu16string efx = "efx";
  eu16string flat = "flat";
  eu16string sharp = "sharp";
  eu16string bold = "bold";
  eu16string italic = "italic";
  eu16string underline = "underline";
};

const Words& TheWords() {
  static const Words words;
  return words;
}

bool Is(const unsigned short* keyword, const eu16string& word) { return sx_strcmp(keyword, word.c_str()) == 0; }

// Collects a command's argument while it is on.
class Capture {
 public:
  template <std::size_t N>
  explicit Capture(unsigned short (&buffer)[N]) : at_(buffer), last_(buffer + N - 1) {}

  void SwitchOnIf(bool matches) { on_ |= matches; }

  void Take(unsigned short unit) {
    if (!on_) return;
    if (unit == ')' || unit == 0) {
      *at_ = 0;
      on_ = unit == 0;
    } else if (at_ != last_) {
      *at_++ = unit;
    }
  }

 private:
  unsigned short* at_;
  unsigned short* const last_;  // the terminator's place when the buffer is full
  bool on_ = false;
};

// Adds the styles that an opening style command names.
void NoteStyles(const Words& words) {
  if (sx_strstr(ucaretefx, words.bold.c_str()) != nullptr) uicaretefx |= kCaretBold;
  if (sx_strstr(ucaretefx, words.italic.c_str()) != nullptr) uicaretefx |= kCaretItalic;
  if (sx_strstr(ucaretefx, words.underline.c_str()) != nullptr) uicaretefx |= kCaretUnderline;
}

// Walks over the command at `caret` and writes what it leaves in the text at `write`, which it advances. Returns where
// the text goes on. The walk sees its own changes: it ends the keyword by a zero, and what it writes may reach into
// the keyword.
unsigned short* StripCommand(unsigned short* caret, unsigned short*& write, bool leading) {
  const Words& words = TheWords();
  const unsigned short* const keyword = caret + 1;
  Capture font(ucaretfont);
  Capture size(ucaretsize);
  Capture efx(ucaretefx);
  unsigned short unit = *caret;
  unsigned short* next = caret + 1;
  for (;; ++next) {
    if (unit == '(') {
      next[-1] = 0;
      if (leading) {
        font.SwitchOnIf(Is(keyword, words.font));
        size.SwitchOnIf(Is(keyword, words.size));
        efx.SwitchOnIf(Is(keyword, words.efx));
      }
      if (Is(keyword, words.flat)) *write++ = 'b';
      if (Is(keyword, words.sharp)) *write++ = '#';
    }
    font.Take(*next);
    size.Take(*next);
    efx.Take(*next);
    if (*next == 0 || unit == ')') break;
    unit = *next;
  }
  NoteStyles(words);
  return next;
}

// Skips units that are copied as they are, whatever comes before them. Controls up to the carriage return, and so the
// terminator, are sorted out later.
unsigned short* SkipPlain(unsigned short* text) {
  constexpr unsigned short kLastOdd = '\r';
  while (EndWithin8(text, kLastOdd) == 8 && !AnyOf4Is(text, '^') && !AnyOf4Is(text + 4, '^')) [[likely]] {
    text += 8;
  }
  while (*text > kLastOdd && *text != '^') ++text;
  return text;
}

}  // namespace

void txt_strip_carets(unsigned short* text) {
  ucaretefx[0] = 0;
  uicaretefx = 0;
  bool leading = true;
  unsigned short* read = text;
  unsigned short* write = text;
  for (;;) {
    if (unsigned short* const end = SkipPlain(read); end != read) {
      write = write == read ? end : std::copy(read, end, write);
      read = end;
      leading = false;
    }
    switch (const unsigned short unit = *read) {
      case 0:
        *write = 0;
        return;
      case '\n':
      case '\r':
        *write++ = ' ';
        ++read;
        break;
      case '^':
        read = StripCommand(read, write, leading);
        break;
      default:
        *write++ = unit;
        ++read;
        leading = false;
    }
  }
}
