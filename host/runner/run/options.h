// What fill, clear and run are asked to do.
#pragma once

#include <string>
#include <vector>

#include "host/musicxml/score.h"
#include "host/runner/run/selection.h"

namespace sok {

enum class TraceMode { kOff, kAll, kChanged };

// What a command of the extension is for, as far as reports know.
enum class Purpose { kFill, kClear, kOther };

struct RunOptions {
  // The extension and its command.
  std::string plugin;
  int command = 0;
  Purpose purpose = Purpose::kOther;
  std::vector<std::string> without;  // host functions that are kept from the extension
  TraceMode trace = TraceMode::kOff;

  // What it works on.
  std::vector<std::string> inputs;
  Selection selection;
  bool count_hidden[kLayers] = {};  // the layer preference: music of a hidden layer does not count
  ReadOptions read;
  WriteOptions write;

  // Where the result goes.
  std::string output;  // empty: nowhere
  std::string output_folder;
  bool in_place = false;
  bool backup = false;
  bool dry_run = false;
  bool check = false;
  int jobs = 1;

  // What is said about it.
  bool quiet = false;
  bool verbose = false;
  bool only_changed = false;
  bool json = false;
  bool frames = false;  // the entries of what changed, before and after
  bool batch = false;   // there are several scores
  std::string html;     // the page's file; empty: none
  int pictures = 24;    // the most systems that are drawn on it for one score

  // Whether anybody reads what became of staff-measures, why some were left as they are, and which.
  bool WantsReport() const { return json || !html.empty() || !quiet; }
  bool WantsReasons() const { return WantsReport() && !only_changed; }
  bool WantsKept() const { return verbose || (!html.empty() && !only_changed); }
};

}  // namespace sok
