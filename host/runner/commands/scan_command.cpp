// scan: an audit of scores, without changes and without an extension.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>

#include "host/engine/document.h"
#include "host/errors.h"
#include "host/runner/commands/commands.h"
#include "host/runner/commands/selection_options.h"
#include "host/runner/exit_codes.h"
#include "host/runner/files/input.h"
#include "host/runner/files/output_file.h"
#include "host/runner/files/outputs.h"
#include "host/runner/report/embedded.h"
#include "host/runner/report/page.h"
#include "host/runner/report/report.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"
#include "host/runner/run/batch.h"

namespace sok {
namespace {

enum Finding { kEmpty, kBarRest, kLookAlike, kHiddenRest, kSurplusVoices, kFindings };

struct FindingText {
  const char* code;
  const char* text;
  const char* noun;  // in the line of counts
  bool sound;        // found in every good score; does not make it worse
};

constexpr FindingText kTexts[kFindings] = {
    {"empty", "empty measure", "empty measure", false},
    {"bar-rest", "lone bar rest", "lone bar rest", true},
    {"look-alike", "look-alike rest: a real rest as long as the measure", "look-alike rest", false},
    {"hidden-rest", "hidden rest: a bar rest that is not printed", "hidden rest", false},
    {"surplus-voices", "surplus voices: more than there are layers", "surplus voice", false},
};

struct ScanOptions {
  std::vector<std::string> inputs;
  Selection selection;
  std::vector<std::string> kinds;  // those that are looked for, and that --check exits for; empty: all
  std::string html;
  bool json = false;
  bool quiet = false;
  int jobs = 1;

  bool Wants(const char* code) const {
    return kinds.empty() || std::ranges::find(kinds, std::string_view(code)) != kinds.end();
  }
};

// What is found goes to `add(finding, layer)`, with layer -1 for the whole staff-measure.
template <typename Add>
void ScanStaffMeasure(const Score& score, short slot, short measure, const Add& add) {
  bool empty = !score.Around(slot, measure).visited;
  for (short layer = 0; layer < kLayers; ++layer) {
    const LayerFacts facts = score.Facts(slot, measure, layer);
    if (facts.hidden_rest || facts.whole_rest) add(facts.hidden_rest ? kHiddenRest : kBarRest, layer);
    if (facts.looks_whole) add(kLookAlike, layer);
    if (facts.surplus) add(kSurplusVoices, layer);
    empty = empty && facts.entry_count == 0 && !facts.hidden_rest;
  }
  if (empty) add(kEmpty, -1);
}

Json FindingJson(const Score& score, short slot, short measure, Finding finding, int layer) {
  return {{"measure", measure},
          {"number", score.measures()[static_cast<std::size_t>(measure - 1)].number},
          {"staff", slot},
          {"layer", layer < 0 ? Json() : Json(layer + 1)},
          {"finding", kTexts[finding].code}};
}

std::string FindingLine(const std::string& file, const Score& score, short slot, short measure, Finding finding,
                        int layer) {
  return ShownText(file + ": " + MeasureLabel(score, measure) + ", " +
                   StaffLabel(score.staves()[static_cast<std::size_t>(slot - 1)])) +
         (layer >= 0 ? ", layer " + std::to_string(layer + 1) : "") + ": " + kTexts[finding].text + "\n";
}

// "2 empty measures, 1 lone bar rest".
std::string CountsText(const Json& counts) {
  std::string text;
  for (const FindingText& finding : kTexts) {
    if (!counts.contains(finding.code)) continue;
    text += (text.empty() ? "" : ", ") + Counted(counts[finding.code].get<long>(), finding.noun);
  }
  return text;
}

// One file's part of the JSON report, and the lines that are printed of it.
Json Scan(const ScanOptions& options, const Input& input) {
  if (!input.error.empty()) throw Error(input.error);
  const std::string file = DisplayName(input.path);
  const std::unique_ptr<Score> score = ReadScore(input.path, {});
  std::vector<std::string> warnings;
  const std::vector<Invocation> blocks = PlanInvocations(*score, options.selection, warnings);
  Json report = {{"file", file}, {"measures", score->measures().size()}, {"staves", score->staves().size()}};
  for (const FindingText& finding : kTexts) {
    if (options.Wants(finding.code)) report["counts"][finding.code] = 0;
  }
  report["findings"] = Json::array();
  std::string out;
  ForEachStaffMeasure(blocks, [&](const Invocation&, short measure, short slot) {
    if (!score->Exists(slot, measure)) return;
    ScanStaffMeasure(*score, slot, measure, [&](Finding finding, int layer) {
      const char* const code = kTexts[finding].code;
      if (!options.Wants(code)) return;
      report["counts"][code] = report["counts"][code].get<long>() + 1;
      if (options.json) report["findings"].push_back(FindingJson(*score, slot, measure, finding, layer));
      if (!options.quiet) out += FindingLine(file, *score, slot, measure, finding, layer);
    });
  });
  for (const Warning& warning : score->warnings()) {
    report["warnings"].push_back({{"line", warning.line}, {"text", warning.text}});
    warnings.push_back(WarningText(warning));
  }
  out += ShownText(file) + ": " + Counted(static_cast<long>(score->measures().size()), "measure") + ", " +
         Counted(static_cast<long>(score->staves().size()), "staff") + ": " + CountsText(report["counts"]) + "\n";
  const std::string err = options.quiet ? "" : PrefixedLines(file + ": ", Folded(warnings));
  return {{"report", report}, {"out", out}, {"err", err}};
}

Json Failed(const std::string& file, const std::string& error) {
  return {{"report", {{"file", file}, {"error", error}}}, {"out", ""}, {"err", "sokrun: " + ShownText(error) + "\n"}};
}

Json ScanOrFail(const ScanOptions& options, const Input& input) {
  try {
    return Scan(options, input);
  } catch (const std::exception& error) {
    return Failed(DisplayName(input.path), error.what());
  }
}

long Worse(const Json& file) {
  long count = 0;
  for (const FindingText& finding : kTexts) {
    if (file.contains("counts") && !finding.sound) count += file["counts"].value(finding.code, 0L);
  }
  return count;
}

// An index of all scores, those that could not be read and the worst first.
std::string ScanPage(const ScanOptions& options, const std::string& summary, const Json& files) {
  Json data = {{"title", "What there is to do"}, {"summary", summary}, {"files", Json::array()}};
  for (const FindingText& finding : kTexts) {
    if (options.Wants(finding.code)) {
      data["kinds"].push_back({{"code", std::string(finding.noun) + "s"}, {"text", finding.text}});
    }
  }
  std::vector<Json> sorted(files.begin(), files.end());
  std::ranges::stable_sort(sorted, std::greater(),
                           [](const Json& file) { return std::pair(file.contains("error"), Worse(file)); });
  for (Json& file : sorted) {
    const Json counts = file.value("counts", Json::object());
    file.erase("findings");
    file["error"] = file.value("error", Json(false));
    file["cells"] = Json::array();
    for (const Json& count : counts) file["cells"].push_back({{"count", count}, {"zero", count == 0}});
    data["files"].push_back(std::move(file));
  }
  return Page("What there is to do", kScanTemplate, data);
}

// Puts the answers of all files together.
class ScanResults {
 public:
  explicit ScanResults(const ScanOptions& options) : options_(options) {
    for (const FindingText& finding : kTexts) {
      if (options_.Wants(finding.code)) totals_[finding.code] = 0;
    }
  }

  void Add(const Json& answer) {
    std::cerr << answer["err"].get<std::string>() << std::flush;
    if (!options_.json) std::cout << answer["out"].get<std::string>() << std::flush;
    const Json& report = answer["report"];
    failed_ += report.contains("error");
    for (auto& [code, total] : totals_.items()) {
      total = total.get<long>() + report.value("counts", Json::object()).value(code, 0L);
    }
    files_.push_back(report);
  }

  int Finish(bool check) {
    const std::string summary = Counted(static_cast<long>(files_.size()), "file") + ": " + CountsText(totals_) +
                                (failed_ > 0 ? ", " + std::to_string(failed_) + " failed" : "");
    if (!options_.html.empty()) WriteFile(options_.html, ScanPage(options_, summary, files_));
    const bool found = std::ranges::any_of(totals_, [](const Json& total) { return total != 0; });
    if (options_.json) {
      const Json numbers = {{"files", files_.size()}, {"failed", failed_}, {"counts", totals_}};
      std::cout << Dump({{"version", 2}, {"files", std::move(files_)}, {"summary", numbers}}) << '\n';
    } else if (files_.size() > 1) {
      std::cout << summary << '\n';
    }
    if (failed_ > 0) return kExitBadInput;
    return check && found ? kExitWouldChange : kExitSuccess;
  }

 private:
  const ScanOptions& options_;
  Json files_ = Json::array(), totals_ = Json::object();
  long failed_ = 0;
};

int ScanFiles(const ScanOptions& options) {
  const FoundInputs found = FindInputs(options.inputs);
  for (const Input& input : found.inputs) {
    if (options.html.empty()) break;
    if (options.html == kStream) throw UsageError("--html: the page needs a file; stdout is for the report");
    if (SameFile(options.html, input.path)) throw UsageError("--html: " + options.html + " is one of the scores");
  }
  for (const std::string& message : found.messages) {
    if (!options.quiet) std::cerr << ShownText(message) << '\n';
  }
  ScanResults results(options);
  const auto work = [&](std::size_t i) {
    std::string bytes;
    Json::to_msgpack(ScanOrFail(options, found.inputs[i]), bytes);
    return bytes;
  };
  const auto done = [&](std::size_t i, const std::string& answer, const std::string& failure) {
    const std::string file = DisplayName(found.inputs[i].path);
    results.Add(failure.empty() ? Json::from_msgpack(answer) : Failed(file, file + ": " + failure));
  };
  RunInProcesses(found.inputs.size(), {.jobs = options.jobs}, {work, done});
  return results.Finish(!options.kinds.empty());
}

}  // namespace

void AddScanCommand(CLI::App& app, int& exit_code) {
  CLI::App& command =
      *app.add_subcommand("scan", "Look for empty measures, bar rests, look-alikes, hidden rests, surplus voices");
  const auto options = std::make_shared<ScanOptions>();
  std::vector<std::string> kinds;
  for (const FindingText& finding : kTexts) kinds.emplace_back(finding.code);
  command.add_option("IN", options->inputs, "Scores, folders of scores, or - for stdin")->required();
  AddSelectionOptions(command, options->selection);
  command
      .add_option(
          "--check", options->kinds,
          "Look for this kind alone and exit 3 when there is one; may be repeated: empty, bar-rest, look-alike, "
          "hidden-rest, surplus-voices")
      ->option_text("KIND")
      ->check(CLI::IsMember(kinds))
      ->allow_extra_args(false);
  AddJobsOption(command, options->jobs);
  command.add_flag("-q,--quiet", options->quiet, "Only a line of counts for every score");
  command.add_flag("--json", options->json, "As JSON");
  command.add_option("--html", options->html, "Also write a page: all scores, the worst first")->option_text("FILE");
  command.footer(
      "Examples:\n  sokrun scan song.mxl\n  sokrun scan scores/ --quiet -j 0 --html edition.html\n"
      "  sokrun scan scores/ --check empty --check look-alike");
  command.callback([options, &exit_code] { exit_code = ScanFiles(*options); });
}

}  // namespace sok
