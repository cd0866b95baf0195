// validate: checks an extension bundle against what the host relies on.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>

#include "host/errors.h"
#include "host/runner/commands/commands.h"
#include "host/runner/exit_codes.h"
#include "host/runner/files/input.h"
#include "host/runner/report/json.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"
#include "host/runner/run/bundle_session.h"
#include "host/runner/run/exports.h"
#include "host/runner/validate/validate.h"
#include "host/runner/validate/validate_score.h"

namespace sok {
namespace {

constexpr const char* kSanitized = "SOKRUN_SANITIZED";  // set once this program began with the sanitizers

struct Arguments {
  ValidateOptions options;
  std::string score;
  std::string only;
  bool sanitize = false;
  bool json = false;
  bool only_failed = false;
};

using Results = std::vector<CheckResult>;

std::string FailureText(const CheckResult& result) {
  return result.failure + (result.last_call.empty() ? "" : "; " + result.last_call);
}

void PrintJson(const Arguments& arguments, const ValidationReport& report, long failed) {
  Json checks = Json::array(), skipped = Json::array();
  for (const CheckResult& result : report.results) {
    if (arguments.only_failed && result.failure.empty()) continue;
    Json row = {{"check", result.kind}, {"name", result.name}, {"passed", result.failure.empty()}};
    if (!result.failure.empty()) row["failure"] = FailureText(result);
    row["number"] = result.number;
    checks.push_back(row);
  }
  for (const SkippedChecks& checks_left : report.skipped) {
    skipped.push_back({{"check", checks_left.kind}, {"why", checks_left.why}});
  }
  const Json all = {{"bundle", arguments.options.plugin},
                    {"seed", arguments.options.seed},
                    {"passed", failed == 0 && !report.results.empty()},
                    {"run", report.results.size()},
                    {"failed", failed},
                    {"checks", checks},
                    {"skipped", skipped}};
  std::printf("%s\n", Dump(all, 2).c_str());
}

std::string CaseName(const CheckResult& result) { return result.kind + " " + std::to_string(result.number); }

// Equal failures of a kind stand once, under the first of them.
void PrintFailures(const Results& results, std::string_view kind) {
  std::vector<std::vector<const CheckResult*>> groups;
  for (const CheckResult& result : results) {
    if (result.kind != kind || result.failure.empty()) continue;
    const auto group = std::ranges::find(groups, result.failure, [](const auto& all) { return all[0]->failure; });
    if (group == groups.end()) {
      groups.push_back({&result});
    } else {
      group->push_back(&result);
    }
  }
  constexpr std::size_t kNamed = 12;
  for (const auto& group : groups) {
    std::printf("             %s, %s: %s\n", CaseName(*group[0]).c_str(), ShownText(group[0]->name).c_str(),
                ShownText(FailureText(*group[0])).c_str());
    if (group.size() == 1) continue;
    std::string others;
    for (std::size_t i = 1; i < std::min(group.size(), kNamed); ++i) others += " " + std::to_string(group[i]->number);
    std::printf("               the same in %zu more:%s%s\n", group.size() - 1, others.c_str(),
                group.size() > kNamed ? " …" : "");
  }
}

void PrintKind(const Arguments& arguments, const ValidationReport& report, const CheckKind& kind) {
  long run = 0, bad = 0;
  for (const CheckResult& result : report.results) {
    if (result.kind == kind.name) ++run, bad += !result.failure.empty();
  }
  const auto name = static_cast<int>(kind.name.size()), what = static_cast<int>(kind.what.size());
  if (run != 0 && (!arguments.only_failed || bad != 0)) {
    std::printf("%-7s %4ld  %-16.*s  %.*s\n", bad != 0 ? "FAILED" : "ok", run, name, kind.name.data(), what,
                kind.what.data());
  }
  PrintFailures(report.results, kind.name);
}

// What was not run for one reason stands in one line.
void PrintSkipped(const std::vector<SkippedChecks>& skipped) {
  std::vector<SkippedChecks> reasons;
  for (const SkippedChecks& left : skipped) {
    const auto same = std::ranges::find(reasons, left.why, &SkippedChecks::why);
    if (same == reasons.end()) {
      reasons.push_back(left);
    } else {
      same->kind += ", " + left.kind;
    }
  }
  for (const SkippedChecks& left : reasons) {
    std::printf("%-7s       %s: %s\n", "skipped", left.kind.c_str(), left.why.c_str());
  }
}

void PrintText(const Arguments& arguments, const ValidationReport& report, long failed) {
  const Results& results = report.results;
  const std::string plugin = ShownText(arguments.options.plugin), score = ShownText(arguments.score);
  std::printf("%s, seed %u, %s\n", plugin.c_str(), arguments.options.seed,
              score.empty() ? "built-in score" : score.c_str());
  for (const CheckKind& kind : CheckKinds()) PrintKind(arguments, report, kind);
  PrintSkipped(report.skipped);
  std::printf("%s, %ld failed\n", Counted(static_cast<long>(results.size()), "check").c_str(), failed);
  const auto bad = std::ranges::find_if(results, [](const CheckResult& result) { return !result.failure.empty(); });
  if (bad == results.end()) return;
  std::printf("One case in a debugger: gdb --args sokrun validate \"%s\" --seed %u%s --in-process --only \"%s\"\n",
              plugin.c_str(), arguments.options.seed, score.empty() ? "" : (" --score \"" + score + "\"").c_str(),
              CaseName(*bad).c_str());
}

std::vector<std::string> KindNames() {
  std::vector<std::string> names;
  for (const CheckKind& kind : CheckKinds()) names.emplace_back(kind.name);
  return names;
}

// "failing 5", or "failing" for the first one.
CheckCase ParseCase(const std::string& text) {
  const std::vector<std::string_view> words = Split(text, ' ');
  const std::vector<std::string> kinds = KindNames();
  int number = 0;
  const std::string_view digits = words.size() == 2 ? words[1] : "0";
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (words.size() > 2 || parsed.ec != std::errc() || parsed.ptr != digits.data() + digits.size() ||
      std::ranges::find(kinds, words[0]) == kinds.end()) {
    throw UsageError("--only: " + text + " is no case; write \"failing 5\", as the report does");
  }
  return {std::string(words[0]), number};
}

// The sanitizers' libraries that the extension needs, which a program has to begin with.
std::string SanitizerLibraries(const std::string& plugin) {
  std::string libraries;
  for (const std::string& library : NeededLibraries(BundleExecutable(plugin))) {
    const std::string name = std::filesystem::path(library).filename();
    const bool is_one = std::ranges::any_of(std::array{"libasan", "libubsan", "libtsan", "libclang_rt."},
                                            [&](const char* start) { return name.starts_with(start); });
    if (is_one) libraries += (libraries.empty() ? "" : ":") + library;
  }
  if (libraries.empty()) {
    throw UsageError("--sanitize: " + plugin + " has no sanitizer; build it with sok_add_extension(... SANITIZE)");
  }
  return libraries;
}

// Starts this program once more, with the sanitizers that the extension was built with.
[[noreturn]] void StartWithSanitizers(const std::string& plugin) {
  setenv("LD_PRELOAD", SanitizerLibraries(plugin).c_str(), 1);
  setenv("ASAN_OPTIONS", "detect_leaks=0", 0);  // what is left at the end is the other checks' affair
  setenv("UBSAN_OPTIONS", "print_stacktrace=1", 0);
  setenv(kSanitized, "1", 1);
  std::string line = ReadBytes("/proc/self/cmdline");
  std::vector<char*> arguments;
  for (std::size_t at = 0; at < line.size(); at = line.find('\0', at) + 1) arguments.push_back(line.data() + at);
  arguments.push_back(nullptr);
  execv("/proc/self/exe", arguments.data());
  throw Error(std::string("--sanitize: sokrun cannot start itself: ") + std::strerror(errno));
}

int Run(Arguments& arguments) {
  ValidateOptions& options = arguments.options;
  if (!arguments.only.empty()) options.only = ParseCase(arguments.only);
  if (!std::filesystem::exists(options.plugin)) throw Error(options.plugin + ": no such bundle");
  if (arguments.sanitize && std::getenv(kSanitized) == nullptr) StartWithSanitizers(options.plugin);
  options.guard_frames = !arguments.sanitize;
  const ReadOptions read = {.document_data = true};
  const auto score = arguments.score.empty() ? Score::Read(kValidationScore, "built-in score", read)
                                             : ReadScore(arguments.score, read);
  const ValidationReport report = Validate(options, score->document());
  const Results& results = report.results;
  const auto failed = std::ranges::count_if(results, [](const CheckResult& result) { return !result.failure.empty(); });
  if (arguments.json) {
    PrintJson(arguments, report, failed);
  } else {
    PrintText(arguments, report, failed);
  }
  if (results.empty()) throw Error("no check was run");
  return failed == 0 ? kExitSuccess : kExitBadInput;
}

std::string KindsHelp() {
  std::string help = "Checks:\n";
  for (const CheckKind& kind : CheckKinds()) {
    help += "  " + std::string(kind.name) + std::string(18 - kind.name.size(), ' ') + std::string(kind.what) + "\n";
  }
  return help +
         "Each runs in a process of its own. Exit code 1 when one fails, or when none was run.\n"
         "Random answers are repeated with --check random --seed N --rounds 1, N as printed.";
}

void AddLimitOptions(CLI::App& validate, ValidateOptions& options) {
  validate.add_option("--rounds", options.rounds, "Of random answers, for each command")
      ->option_text("N")
      ->check(CLI::Range(0, 100000))
      ->capture_default_str();
  validate.add_option("--refusals", options.refusals, "Of calls, for each command; spread evenly where it makes more")
      ->option_text("N")
      ->check(CLI::Range(1, 1000000))
      ->capture_default_str();
  validate.add_option("--timeout", options.seconds, "Seconds that one check may take")
      ->option_text("N")
      ->check(CLI::Range(1, 3600))
      ->capture_default_str();
  validate.add_option("-j,--jobs", options.jobs, "Checks at the same time")
      ->option_text("N")
      ->check(CLI::Range(1, 256))
      ->default_str("one a processor");
}

}  // namespace

void AddValidateCommand(CLI::App& app, int& exit_code) {
  CLI::App& validate = *app.add_subcommand("validate", "Check an extension bundle against what hosts rely on");
  const auto arguments = std::make_shared<Arguments>();
  ValidateOptions& options = arguments->options;
  options.seed = std::random_device()();
  options.jobs = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  validate.add_option("BUNDLE", options.plugin, "The extension bundle")->required();
  validate.add_option("--check", options.kinds, "Only checks of this kind; may be repeated")
      ->option_text("KIND")
      ->check(CLI::IsMember(KindNames()))
      ->allow_extra_args(false);
  validate.add_option("--score", arguments->score, "The score that commands run on, instead of a built-in one")
      ->option_text("FILE");
  validate.add_option("--seed", options.seed, "Of the random answers")
      ->option_text("N")
      ->default_str("another one every time");
  AddLimitOptions(validate, options);
  CLI::Option* const only =
      validate.add_option("--only", arguments->only, "One case alone, by the name that a report gives it")
          ->option_text("\"KIND N\"");
  validate.add_flag("--in-process", options.in_process, "With --only: in this very process, for a debugger")
      ->needs(only);
  validate.add_flag("--sanitize", arguments->sanitize,
                    "With the sanitizers that the extension was built with: sok_add_extension(... SANITIZE)");
  validate.add_flag("--only-failed", arguments->only_failed, "Say nothing about checks that pass");
  validate.add_flag("--json", arguments->json, "As JSON");
  validate.footer(KindsHelp());
  validate.callback([arguments, &exit_code] { exit_code = Run(*arguments); });
}

}  // namespace sok
