// The report as one page that needs nothing else: for every score that changed a grid of measures by staves coloured by
// what happened, the reasons, and engraved pictures of the changed systems where Verovio is there. Scores that did not
// change are a folded list.
#pragma once

#include <string>

#include "host/musicxml/score.h"
#include "host/runner/report/report.h"
#include "host/runner/run/options.h"

namespace sok {

// What the page says of one score. Draws it, too, which takes a while.
Json PageData(const Score& score, const ScoreReport& report, const RunOptions& options);

// The page of all scores: `files` holds what PageData or FailureJson made of each, in order.
std::string ReportPage(const RunOptions& options, const std::string& summary, const Json& files);

}  // namespace sok
