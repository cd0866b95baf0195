// fill, clear and run: the command line, one file or many, one report.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>

#include "host/errors.h"
#include "host/runner/commands/commands.h"
#include "host/runner/commands/selection_options.h"
#include "host/runner/exit_codes.h"
#include "host/runner/files/input.h"
#include "host/runner/files/outputs.h"
#include "host/runner/report/collector.h"
#include "host/runner/report/progress.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"
#include "host/runner/run/batch.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/run/host_functions.h"
#include "host/runner/run/run_score.h"

namespace sok {
namespace {

// What the options leave as text until all of them are known.
struct RawOptions {
  std::vector<std::string> hide_layers;
  std::vector<std::string> allow_hidden;
  std::string hidden_rests;
  std::string cross_staff;
  std::optional<std::string> layers;
  bool trace = false;
  bool trace_changed = false;
};

void HideFunctions(const std::vector<std::string>& names) {
  const std::vector<std::string>& all = HostFunctionNames();
  for (const std::string& name : names) {
    if (std::ranges::find(all, name) == all.end()) {
      throw UsageError("--without: the host interface has no function " + name);
    }
  }
  if (!names.empty()) HideHostFunctions(names);
}

void SetReadOptions(const RawOptions& raw, ReadOptions& read) {
  read.hidden_rests = raw.hidden_rests == "keep"    ? HiddenRests::kKeep
                      : raw.hidden_rests == "empty" ? HiddenRests::kEmpty
                                                    : HiddenRests::kEntry;
  read.fill_visited = raw.cross_staff == "fill";
  if (!raw.layers) return;
  read.layers = 0;
  for (const NumberRange& range : ParseRanges(*raw.layers, "--layers")) {
    const int last = range.open ? kLayers : range.last;
    if (range.first > kLayers || last > kLayers) throw UsageError("--layers: no staff has a layer above 4");
    for (int layer = range.first; layer <= last; ++layer) read.layers |= 1U << (layer - 1);
  }
}

void SetRunOptions(const RawOptions& raw, RunOptions& options) {
  for (const std::string& hidden : raw.hide_layers) options.selection.hidden_layers.push_back(ParseHiddenLayer(hidden));
  for (const std::string& layers : raw.allow_hidden) {
    for (const std::string_view layer : Split(layers, ',')) {
      options.count_hidden[ParseLayer(layer, "--allow-hidden")] = true;
    }
  }
  SetReadOptions(raw, options.read);
  options.read.document_data = options.purpose == Purpose::kOther;
  options.trace = raw.trace_changed ? TraceMode::kChanged : raw.trace ? TraceMode::kAll : TraceMode::kOff;
}

int RunFiles(RunOptions& options) {
  HideFunctions(options.without);
  const FoundInputs found = FindInputs(options.inputs, options.output_folder);
  const std::vector<Input>& inputs = found.inputs;
  options.batch = inputs.size() > 1;
  const std::vector<std::string> outputs = PlanOutputs(options, inputs);
  MakeOutputFolders(options, outputs);
  for (const std::string& message : found.messages) {
    if (!options.quiet) std::cerr << ShownText(message) << '\n';
  }
  Collector collector(options, outputs.front() == kStream || (options.dry_run && !options.json));
  Progress progress(inputs.size(), options.batch && isatty(STDERR_FILENO) != 0 && !options.quiet);
  const auto result_of = [&](std::size_t i, const std::string& answer, const std::string& failure) {
    try {
      if (!failure.empty()) throw Error(failure);
      return FileResult::Deserialize(answer);
    } catch (const Error& error) {
      return Failure(inputs[i], kExitBadInput, DisplayName(inputs[i].path) + ": " + error.what());
    }
  };
  const auto done = [&](std::size_t i, const std::string& answer, const std::string& failure) {
    progress.Clear();
    collector.Add(result_of(i, answer, failure));
  };
  RunInProcesses(inputs.size(), {.jobs = options.jobs},
                 {[&](std::size_t i) { return RunOnFile(options, inputs[i], outputs[i]).Serialize(); }, done,
                  [&](std::size_t ended) { progress.Show(ended); }});
  progress.Clear();
  return collector.Finish();
}

void AddLayerOptions(CLI::App& command, RawOptions& raw) {
  command
      .add_option("--hide-layer", raw.hide_layers,
                  "Layer N (1-4) is hidden, on these staves or on all; may be repeated")
      ->option_text("N[:STAVES]")
      ->group(kSelectionGroup)
      ->allow_extra_args(false);
  command
      .add_option("--allow-hidden", raw.allow_hidden, "Layers (1-4) whose music does not count while they are hidden")
      ->option_text("LIST")
      ->group(kSelectionGroup)
      ->allow_extra_args(false);
}

void AddReadingOptions(CLI::App& command, RawOptions& raw, RunOptions& options) {
  constexpr const char* kGroup = "Reading and writing";
  const bool own = options.purpose != Purpose::kOther;
  raw.hidden_rests = own ? "keep" : "entry";
  raw.cross_staff = own ? "keep" : "fill";
  command.add_option("--hidden-rests", raw.hidden_rests, "What a lone full rest is that is not printed")
      ->option_text("keep|entry|empty")
      ->check(CLI::IsMember({"keep", "entry", "empty"}))
      ->capture_default_str()
      ->group(kGroup);
  command
      .add_option("--cross-staff", raw.cross_staff,
                  "Empty layers where another staff's voice is drawn: left alone, or filled")
      ->option_text("keep|fill")
      ->check(CLI::IsMember({"keep", "fill"}))
      ->capture_default_str()
      ->group(kGroup);
  if (options.purpose != Purpose::kFill) {  // which writes into layer 1 and asks all of them
    command.add_option("--layers", raw.layers, "Layers (1-4) that the extension gets to see: 2-4")
        ->option_text("LIST")
        ->group(kGroup);
  }
  command
      .add_flag("--keep-fermatas", options.write.keep_fermatas, "A fermata on a rest that goes moves to the barline")
      ->group(kGroup);
}

void AddOutputOptions(CLI::App& command, RunOptions& options) {
  constexpr const char* kGroup = "Output";
  CLI::Option* const output =
      command.add_option("-o,--output", options.output, "Write the score here; - is stdout; may be the input itself")
          ->option_text("FILE")
          ->group(kGroup);
  CLI::Option* const in_place =
      command.add_flag("-i,--in-place", options.in_place, "Write each score over its input")->group(kGroup);
  CLI::Option* const folder =
      command
          .add_option("--output-dir", options.output_folder, "Write the scores into this folder, under their own names")
          ->option_text("FOLDER")
          ->group(kGroup);
  command.add_flag("--backup", options.backup, "With --in-place: keep each original beside it, as NAME.bak")
      ->needs(in_place)
      ->group(kGroup);
  CLI::Option* const dry_run =
      command.add_flag("-n,--dry-run", options.dry_run, "Write nothing; print what would change as a unified diff")
          ->group(kGroup);
  CLI::Option* const check =
      command.add_flag("--check", options.check, "Write nothing; exit 3 when something would change")->group(kGroup);
  in_place->excludes(output)->excludes(folder);
  folder->excludes(output);
  for (CLI::Option* const nothing_written : {dry_run, check}) {
    nothing_written->excludes(output)->excludes(in_place)->excludes(folder);
  }
  AddJobsOption(command, options.jobs);
  command.get_option("--jobs")->group(kGroup);
}

void AddReportOptions(CLI::App& command, RunOptions& options) {
  constexpr const char* kGroup = "Report";
  CLI::Option* const quiet =
      command.add_flag("-q,--quiet", options.quiet, "Say nothing but errors and alerts")->group(kGroup);
  command.add_flag("--json", options.json, "Report as JSON")->group(kGroup);
  command.add_flag("--frames", options.frames, "Print the entries of what changed, before and after")->group(kGroup);
  CLI::Option* const verbose =
      command.add_flag("-v,--verbose", options.verbose, "Report every staff-measure, and why it was kept")
          ->excludes(quiet)
          ->group(kGroup);
  command.add_flag("--only-changed", options.only_changed, "Report nothing of what stays as it is, on the page, too")
      ->excludes(verbose)
      ->group(kGroup);
  CLI::Option* const html = command.add_option("--html", options.html, "Also write the report as a page to look at")
                                ->option_text("FILE")
                                ->group(kGroup);
  command.add_option("--pictures", options.pictures, "The most systems drawn on the page for one score")
      ->option_text("N")
      ->needs(html)
      ->check(CLI::Range(0, 10000))
      ->capture_default_str()
      ->group(kGroup);
}

void AddExtensionOptions(CLI::App& command, RawOptions& raw, RunOptions& options) {
  constexpr const char* kGroup = "Extension";
  command.add_option("--plugin", options.plugin, "The extension bundle")
      ->option_text("BUNDLE")
      ->default_str("MeasureRests")
      ->group(kGroup);
  command.add_flag("--trace", raw.trace, "Print every call of the host with its arguments and answer")->group(kGroup);
  command.add_flag("--trace-changed", raw.trace_changed, "The same for changed staff-measures only")->group(kGroup);
  command.add_option("--without", options.without, "Keep a host function (SX_...) from the extension; may be repeated")
      ->option_text("NAME")
      ->allow_extra_args(false)
      ->group(kGroup);
}

void AddCommand(CLI::App& app, int& exit_code, const std::string& name, const std::string& description, Purpose purpose,
                int number, const std::string& examples) {
  CLI::App& command = *app.add_subcommand(name, description);
  const auto raw = std::make_shared<RawOptions>();
  const auto options = std::make_shared<RunOptions>();
  options->purpose = purpose;
  options->command = number;
  if (purpose == Purpose::kOther) {
    command.add_option("N", options->command, "The command's number, as `sokrun list` prints it")
        ->required()
        ->check(CLI::Range(0, 32767));
  }
  command.add_option("IN", options->inputs, "Scores, folders of scores, or - for stdin")->required();
  AddSelectionOptions(command, options->selection);
  AddLayerOptions(command, *raw);
  AddReadingOptions(command, *raw, *options);
  AddOutputOptions(command, *options);
  AddReportOptions(command, *options);
  AddExtensionOptions(command, *raw, *options);
  command.footer(examples);
  command.callback([raw, options, &exit_code] {
    if (options->plugin.empty()) options->plugin = DefaultPlugin();
    SetRunOptions(*raw, *options);
    exit_code = RunFiles(*options);
  });
}

}  // namespace

void AddRunCommands(CLI::App& app, int& exit_code) {
  AddCommand(app, exit_code, "fill", "Put whole-measure rests into empty measures", Purpose::kFill, 1,
             "Examples:\n"
             "  sokrun fill song.musicxml -o filled.musicxml\n"
             "  sokrun fill song.mxl --measures 3-8,12 --parts Piano --dry-run\n"
             "  sokrun fill song.mxl -o - --hide-layer 2:3-4 --allow-hidden 2 > filled.mxl\n"
             "  sokrun fill scores/ --output-dir filled/ -j 0 --html report.html\n"
             "  sokrun fill scores/ --check --quiet");
  AddCommand(app, exit_code, "clear", "Take whole-measure rests out", Purpose::kClear, 0,
             "Examples:\n"
             "  sokrun clear song.mxl --in-place --backup\n"
             "  sokrun clear song.musicxml --numbers 3-8 --staves 1 -o cleared.musicxml --keep-fermatas\n"
             "  sokrun clear - < song.musicxml > cleared.musicxml");
  AddCommand(app, exit_code, "run", "Run any command of any extension bundle", Purpose::kOther, 0,
             "Examples:\n"
             "  sokrun run 0 song.musicxml --plugin MyExtension.bundle -o out.musicxml --trace\n"
             "  sokrun run 1 song.musicxml --without SX_GetShowLayer --dry-run");
}

}  // namespace sok
