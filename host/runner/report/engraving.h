// Pictures of the systems that a run changed, drawn by Verovio (the npm package) through Node.
//
// The package is looked for in the folders of NODE_PATH, then where scripts/install-verovio.sh puts it:
// $XDG_DATA_HOME/sokrun/node_modules, by default ~/.local/share/sokrun/node_modules.
#pragma once

#include <string>
#include <vector>

#include "host/musicxml/score.h"
#include "host/runner/run/selection.h"

namespace sok {

struct SystemPicture {
  NumberRange measures;
  std::string before;  // SVG; notes and rests that went have the class went
  std::string after;   // SVG; those that came have the class came
};

struct Engraving {
  std::vector<SystemPicture> systems;
  long left = 0;        // changed systems that are not drawn
  std::string version;  // of Verovio
  std::string trouble;  // why there are no pictures; empty when there are
};

// Draws at most `limit` systems.
Engraving Engrave(const Score& score, const std::string& text_after, const std::vector<Change>& changes, int limit);

}  // namespace sok
