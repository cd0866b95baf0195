// Why a staff-measure was changed, or left as it was.
//
// What happened is read from the frames before and after; the reason is found in what the layers held before.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/musicxml/score.h"
#include "host/runner/run/options.h"

namespace sok {

enum class Outcome : unsigned char { kFilled, kCleared, kChanged, kKept };

enum class Reason : unsigned char {
  kNoMusic,          // filled: no layer holds an entry
  kHiddenMusicOnly,  // filled: music in hidden layers does not count
  kWholeRest,        // a lone whole-measure rest: the one that went, or the one in the way
  kHiddenWholeRest,  // the same, not printed
  kOtherChange,      // entries changed in a way that is neither
  kMusic,
  kHiddenMusic,  // music that is not printed
  kLooksWhole,   // a rest as long as the measure that is a real rest of its own duration
  kRestBesideGrace,
  kRestBesideOthers,
  kCue,
  kSurplusVoices,
  kCrossStaff,
  kVisited,     // nothing of its own, but voices of another staff are drawn there
  kNothing,     // there was nothing to do
  kMissing,     // the part does not have the measure
  kPassedOver,  // nothing in the score explains it
};

// The answer for one staff in one measure.
struct Verdict {
  Outcome outcome = Outcome::kKept;
  Reason reason = Reason::kNothing;
  short layer = -1;  // the layer that decided, from 0; -1: none did
  bool layer_shown = true;
};

// One invocation's settings, as far as verdicts depend on them.
struct Settings {
  Purpose purpose = Purpose::kOther;
  bool layer_shown[kLayers] = {true, true, true, true};
  bool count_hidden[kLayers] = {};
};

// `changes` are those of this staff in this measure, in order of layers.
Verdict Explain(const Score& score, short slot, short measure, const std::vector<Change>& changes,
                const Settings& settings);

std::string_view Name(Outcome outcome);                            // "filled", "cleared", "changed", "kept"
std::string_view Code(Reason reason);                              // for programs: "no-music" …
std::string VerdictText(const Verdict& verdict, Purpose purpose);  // "layer 2 is shown and holds music"

// What the user should know of a change: notations that went with it, signs around the measure, a guessed length.
std::vector<std::string> Notes(const Score& score, const std::vector<Change>& changes, bool fermatas_kept);

}  // namespace sok
