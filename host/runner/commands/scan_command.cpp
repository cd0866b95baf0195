// scan: an audit of scores, without changes and without an extension.
#include <cstddef>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/engine/document.h"
#include "host/runner/commands/commands.h"
#include "host/runner/files/input.h"
#include "host/runner/report/report.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"

namespace sok {
namespace {

using Json = nlohmann::ordered_json;

enum Finding { kEmpty, kBarRest, kLookAlike, kHiddenRest, kSurplusVoices, kFindings };

struct FindingText {
  const char* code;
  const char* text;
  const char* noun;  // in the line of counts
};

constexpr FindingText kTexts[kFindings] = {
    {"empty", "empty measure", "empty measure"},
    {"bar-rest", "lone bar rest", "lone bar rest"},
    {"look-alike", "look-alike rest: a real rest as long as the measure", "look-alike rest"},
    {"hidden-rest", "hidden rest: a bar rest that is not printed", "hidden rest"},
    {"surplus-voices", "surplus voices: more than there are layers", "surplus voice"},
};

struct Found {
  short slot, measure, layer;  // layer -1: the whole staff-measure
  Finding finding;
};

struct ScanOptions {
  std::vector<std::string> inputs;
  bool json = false;
  bool quiet = false;
  ReadOptions read;
};

std::vector<Found> Scan(const Score& score) {
  std::vector<Found> all;
  for (std::size_t m = 1; m <= score.measures().size(); ++m) {
    for (std::size_t s = 1; s <= score.staves().size(); ++s) {
      const auto measure = static_cast<short>(m), slot = static_cast<short>(s);
      if (!score.Exists(slot, measure)) continue;
      bool empty = true;
      for (short layer = 0; layer < kLayers; ++layer) {
        const LayerFacts facts = score.Facts(slot, measure, layer);
        const auto add = [&](Finding finding) { all.push_back({slot, measure, layer, finding}); };
        if (facts.hidden_rest)
          add(kHiddenRest);
        else if (facts.whole_rest)
          add(kBarRest);
        if (facts.looks_whole) add(kLookAlike);
        if (facts.surplus) add(kSurplusVoices);
        empty = empty && facts.entries == 0 && !facts.hidden_rest;
      }
      if (empty) all.push_back({slot, measure, -1, kEmpty});
    }
  }
  return all;
}

Json ToJson(const std::string& file, const Score& score, const std::vector<Found>& all,
            const long (&counts)[kFindings]) {
  Json json = {{"file", file}, {"measures", score.measures().size()}, {"staves", score.staves().size()}};
  for (int i = 0; i < kFindings; ++i) json["counts"][kTexts[i].code] = counts[i];
  json["findings"] = Json::array();
  for (const Found& found : all) {
    json["findings"].push_back({{"measure", found.measure},
                                {"number", score.measures()[static_cast<std::size_t>(found.measure - 1)].number},
                                {"staff", found.slot},
                                {"layer", found.layer < 0 ? Json() : Json(found.layer + 1)},
                                {"finding", kTexts[found.finding].code}});
  }
  for (const Warning& warning : score.warnings())
    json["warnings"].push_back({{"line", warning.line}, {"text", warning.text}});
  return json;
}

void Print(const std::string& file, const Score& score, const std::vector<Found>& all, const long (&counts)[kFindings],
           bool quiet) {
  std::string text;
  for (std::size_t i = 0; i < all.size() && !quiet; ++i) {
    const Found& found = all[i];
    text += ShownText(file + ": " + MeasureLabel(score, found.measure) + ", " +
                      StaffLabel(score.staves()[static_cast<std::size_t>(found.slot - 1)]));
    if (found.layer >= 0) text += ", layer " + std::to_string(found.layer + 1);
    text += std::string(": ") + kTexts[found.finding].text + "\n";
  }
  text += ShownText(file) + ": " + Counted(static_cast<long>(score.measures().size()), "measure") + ", " +
          Counted(static_cast<long>(score.staves().size()), "staff");
  for (int i = 0; i < kFindings; ++i) text += std::string(i == 0 ? ": " : ", ") + Counted(counts[i], kTexts[i].noun);
  std::cout << text << '\n';
}

int ScanFiles(const ScanOptions& options) {
  int exit_code = kExitSuccess;
  Json files = Json::array();
  for (const Input& input : FindInputs(options.inputs).inputs) {
    const std::string file = DisplayName(input.path);
    try {
      const std::unique_ptr<Score> score = ReadScore(input.path, options.read);
      const std::vector<Found> all = Scan(*score);
      long counts[kFindings] = {};
      for (const Found& found : all) ++counts[found.finding];
      for (const Warning& warning : score->warnings()) {
        if (options.quiet) continue;
        const std::string line = warning.line > 0 ? "line " + std::to_string(warning.line) + ": " : "";
        std::cerr << ShownText(file + ": " + line + warning.text) << '\n';
      }
      if (options.json)
        files.push_back(ToJson(file, *score, all, counts));
      else
        Print(file, *score, all, counts, options.quiet);
    } catch (const std::runtime_error& error) {
      std::cerr << "sokrun: " << ShownText(error.what()) << '\n';
      if (options.json) files.push_back({{"file", file}, {"error", error.what()}});
      exit_code = kExitBadInput;
    }
  }
  if (options.json)
    std::cout << ShownJson(Json{{"version", 1}, {"files", files}}.dump(1, ' ', false, Json::error_handler_t::replace))
              << '\n';
  return exit_code;
}

}  // namespace

void AddScanCommand(CLI::App& app, int& exit_code) {
  CLI::App& command =
      *app.add_subcommand("scan", "Look for empty measures, bar rests, look-alikes, hidden rests, surplus voices");
  const auto options = std::make_shared<ScanOptions>();
  const auto cross_staff = std::make_shared<std::string>("home");
  command.add_option("IN", options->inputs, "Scores, folders of scores, or - for stdin")->required();
  command.add_option("--cross-staff", *cross_staff, "The staff notes live on: their voice's, or where they stand")
      ->option_text("home|drawn")
      ->check(CLI::IsMember({"home", "drawn"}))
      ->capture_default_str();
  command.add_flag("--json", options->json, "As JSON");
  command.add_flag("-q,--quiet", options->quiet, "Only a line of counts for every score");
  command.footer("Examples:\n  sokrun scan song.mxl\n  sokrun scan scores/ --quiet");
  command.callback([options, cross_staff, &exit_code] {
    options->read.cross_staff_drawn = *cross_staff == "drawn";
    exit_code = ScanFiles(*options);
  });
}

}  // namespace sok
