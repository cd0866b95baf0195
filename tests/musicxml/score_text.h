// Small scores from a shorthand, the commands' effect on a document, and frames as text.
#pragma once

#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "host/engine/document.h"
#include "host/musicxml/score.h"

namespace sok {

// A partwise score in one line of text. Elements are separated by blanks, measures by '|', parts by "||":
//   n4 note, r4 rest, R4 <rest measure="yes"/>, g grace note, b4 <backup>, f4 <forward>, d <direction>,
//   e <barline location="right">, @2 divisions, %3/4 time signature, S2 staves.
// Behind a note: v1 voice, s2 staff, c chord, h not printed, u cue, y fermata, a tied to the next note, z to the one
// before, p placed at B4, twhole type, . dot.
std::string ScoreText(std::string_view shorthand);

std::unique_ptr<Score> ReadScoreText(const std::string& text, const ReadOptions& options = {});

// What the commands do to a document, over the whole of it; how many frames changed.
int FillMeasures(Score& score);
int ClearRests(Score& score);

// One change of one frame: pitch, value, a note of a chord, an entry in or out, another layer or measure.
void RandomEdit(Document& document, std::mt19937& random);

// A score's text with measures that hold nothing in XML's short form, in which they may come back.
std::string Short(std::string text);

// "1024n 1024n/4096r;-|…": entries by layer (/), staff (;) and measure (|); n notes, r rests; "-" no entry.
std::string Frames(const Score& score);

}  // namespace sok
