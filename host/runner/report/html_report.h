// The report as one page that needs nothing else: for every score a grid of measures by staves coloured by what
// happened, the reasons, and engraved pictures of the changed systems where Verovio is there.
#pragma once

#include <string>

#include "host/musicxml/score.h"
#include "host/runner/commands/options.h"
#include "host/runner/report/report.h"

namespace sok {

// The section of one score. Draws it, too, which takes a while.
std::string HtmlSection(const Score& score, const ScoreReport& report, const RunOptions& options);

// The section of a score that failed.
std::string HtmlFailure(const std::string& file, const std::string& error);

// The page around the sections.
std::string HtmlPage(Purpose purpose, const std::string& summary, const std::string& sections);

}  // namespace sok
