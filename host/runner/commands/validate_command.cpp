// validate: checks an extension bundle against what the host relies on.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <thread>

#include "host/runner/commands/commands.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/report/text.h"
#include "host/runner/validate/validate.h"
#include "host/runner/validate/validate_score.h"

namespace sok {
namespace {

struct Command {
  ValidateOptions options;
  std::string score;
  bool json = false;
  bool only_failed = false;
};

void PrintJson(const Command& command, const std::vector<CheckResult>& results, long failed) {
  nlohmann::ordered_json checks = nlohmann::ordered_json::array();
  for (const CheckResult& result : results) {
    if (command.only_failed && result.failure.empty()) continue;
    nlohmann::ordered_json row = {{"check", result.kind}, {"name", result.name}, {"passed", result.failure.empty()}};
    if (!result.failure.empty()) row["failure"] = result.failure;
    checks.push_back(row);
  }
  const nlohmann::ordered_json report = {{"bundle", command.options.plugin},
                                         {"seed", command.options.seed},
                                         {"passed", failed == 0 && !results.empty()},
                                         {"run", results.size()},
                                         {"failed", failed},
                                         {"checks", checks}};
  const std::string text = report.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
  std::printf("%s\n", ShownJson(text).c_str());
}

void PrintText(const Command& command, const std::vector<CheckResult>& results, long failed) {
  std::printf("%s, seed %u\n", ShownText(command.options.plugin).c_str(), command.options.seed);
  for (const CheckKind& kind : CheckKinds()) {
    long run = 0, bad = 0;
    for (const CheckResult& result : results) {
      if (result.kind == kind.name) ++run, bad += !result.failure.empty();
    }
    if (run == 0 || (command.only_failed && bad == 0)) continue;
    std::printf("%-6s %4ld  %-16.*s  %.*s\n", bad != 0 ? "FAILED" : "ok", run, static_cast<int>(kind.name.size()),
                kind.name.data(), static_cast<int>(kind.what.size()), kind.what.data());
    for (const CheckResult& result : results) {
      if (result.kind != kind.name || result.failure.empty()) continue;
      std::printf("             %s: %s\n", ShownText(result.name).c_str(), ShownText(result.failure).c_str());
    }
  }
  std::printf("%s, %ld failed\n", Counted(static_cast<long>(results.size()), "check").c_str(), failed);
}

int Run(const Command& command) {
  if (!std::filesystem::exists(command.options.plugin)) throw InputError(command.options.plugin + ": no such bundle");
  const ReadOptions read = {.document_data = true};
  const auto score =
      command.score.empty() ? Score::Read(kValidationScore, "built-in score", read) : ReadScore(command.score, read);
  const std::vector<CheckResult> results = Validate(command.options, score->document());
  const auto failed = std::ranges::count_if(results, [](const CheckResult& result) { return !result.failure.empty(); });
  if (command.json) {
    PrintJson(command, results, failed);
  } else {
    PrintText(command, results, failed);
  }
  if (results.empty()) throw InputError("no check was run");
  return failed == 0 ? kExitSuccess : kExitBadInput;
}

std::vector<std::string> KindNames() {
  std::vector<std::string> names;
  for (const CheckKind& kind : CheckKinds()) names.emplace_back(kind.name);
  return names;
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

}  // namespace

void AddValidateCommand(CLI::App& app, int& exit_code) {
  CLI::App& validate = *app.add_subcommand("validate", "Check an extension bundle against what hosts rely on");
  const auto command = std::make_shared<Command>();
  ValidateOptions& options = command->options;
  options.seed = std::random_device()();
  options.jobs = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  validate.add_option("BUNDLE", options.plugin, "The extension bundle")->required();
  validate.add_option("--check", options.kinds, "Only checks of this kind; may be repeated")
      ->option_text("KIND")
      ->check(CLI::IsMember(KindNames()))
      ->allow_extra_args(false);
  validate.add_option("--score", command->score, "The score that commands run on, instead of a built-in one")
      ->option_text("FILE");
  validate.add_option("--seed", options.seed, "Of the random answers")
      ->option_text("N")
      ->default_str("another one every time");
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
  validate.add_flag("--only-failed", command->only_failed, "Say nothing about checks that pass");
  validate.add_flag("--json", command->json, "As JSON");
  validate.footer(KindsHelp());
  validate.callback([command, &exit_code] { exit_code = Run(*command); });
}

}  // namespace sok
