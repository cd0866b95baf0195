#include "host/runner/validate/validate_plan.h"

#include <algorithm>
#include <cstddef>
#include <map>

#include "host/errors.h"
#include "host/runner/run/host_functions.h"

namespace sok {
namespace {

// What any host can tell.
void CheckOnFaultyHost(CheckHost& host, const std::vector<int>& commands) {
  for (const int command : commands) {
    EREGION region = RegionOf(host.document, Scope::kWholeScore);
    host.extension.Invoke(command, &region);
    for (const auto& [kind, finding] : host.watch.AllFindings()) {
      throw Error(commands.size() > 1 ? CommandName(command) + " " + finding : finding);
    }
  }
}

PlannedCase FaultCase(const char* kind, int command, const std::string& name, const HostFault& fault) {
  return {kind, CommandName(command) + name,
          [command](CheckHost& host, CaseAnswer&) { CheckOnFaultyHost(host, {command}); }, fault};
}

}  // namespace

std::string CommandName(int command) { return "command " + std::to_string(command); }

std::vector<PlannedCase> ExtensionCases() {
  std::vector<PlannedCase> cases;
  for (const ExtensionCheck& check : ExtensionChecks()) {
    cases.push_back({std::string(check.name), std::string(check.what),
                     [run = check.run](CheckHost& host, CaseAnswer&) { run(host); }});
  }
  return cases;
}

std::vector<PlannedCase> LanguageCases(const std::string& plugin) {
  std::vector<PlannedCase> cases;
  for (const std::string& language : Languages(plugin)) {
    PlannedCase check{"languages", language,
                      [language](CheckHost& host, CaseAnswer&) { CheckLanguage(host, language); }};
    check.language = language;
    cases.push_back(std::move(check));
  }
  return cases;
}

std::vector<PlannedCase> RunsOfCommands(int command_count) {
  std::vector<PlannedCase> cases;
  for (int command = 0; command < command_count; ++command) {
    for (const Scope scope : kScopes) {
      PlannedCase check{"runs", CommandName(command), [=](CheckHost& host, CaseAnswer& answer) {
                          answer.findings = RunCommand(host, command, scope);
                        }};
      if (scope == Scope::kPart) check.name += ", part of the score";
      if (scope == Scope::kEnd) check.name += ", last measure";
      check.command = command;
      cases.push_back(std::move(check));
    }
  }
  return cases;
}

std::vector<PlannedCase> SurplusEndCases(const std::vector<SoundCommand>& commands, int starter) {
  std::vector<PlannedCase> cases;
  for (const SoundCommand& command : commands) {
    cases.push_back(
        {"edits", CommandName(command.number) + ", while other edits are open",
         [starter, number = command.number](CheckHost& host, CaseAnswer&) { CheckEnds(host, starter, number); }});
  }
  return cases;
}

std::vector<PlannedCase> AliasCases(const std::vector<SoundCommand>& commands) {
  std::map<std::size_t, int> by_trace;
  for (const SoundCommand& command : commands) by_trace.emplace(command.answer.trace, command.number);
  std::vector<PlannedCase> cases;
  for (const SoundCommand& command : commands) {
    const auto run = [by_trace, number = command.number, own = command.answer.trace](CheckHost& host, CaseAnswer&) {
      RunCommand(host, number, Scope::kWholeScore, "Ext_invoke");
      const auto other = by_trace.find(host.watch.trace());
      if (other == by_trace.end() || host.watch.trace() == own) return;
      throw Error("Ext_invoke runs " + CommandName(other->second));
    };
    cases.push_back({"aliases", CommandName(command.number), run});
  }
  return cases;
}

std::vector<PlannedCase> MissingCases(const std::vector<SoundCommand>& commands) {
  std::vector<int> numbers;
  for (const SoundCommand& command : commands) numbers.push_back(command.number);
  std::vector<PlannedCase> cases;
  for (const std::string& name : HostFunctionNames()) {
    const auto run = [numbers](CheckHost& host, CaseAnswer&) { CheckOnFaultyHost(host, numbers); };
    cases.push_back({"missing", "without " + name, run, {.hidden = name}});
  }
  return cases;
}

std::vector<PlannedCase> FailingCases(const SoundCommand& command, int most) {
  const std::vector<std::string>& calls = command.answer.calls;
  const std::size_t refusals = std::min(calls.size(), static_cast<std::size_t>(most));
  std::vector<PlannedCase> cases;
  for (std::size_t i = 0; i < refusals; ++i) {
    const std::size_t call = i * calls.size() / refusals;
    cases.push_back(FaultCase("failing", command.number,
                              ", call " + std::to_string(call) + " (" + calls[call] + ") refused",
                              {.refused_call = static_cast<long>(call)}));
  }
  return cases;
}

std::vector<PlannedCase> RandomCases(int command, int rounds, unsigned int seed) {
  std::vector<PlannedCase> cases;
  for (int round = 0; round < rounds; ++round) {
    const unsigned int own = seed + static_cast<unsigned int>(round);
    cases.push_back(FaultCase("random", command, ", seed " + std::to_string(own), {.seed = own}));
  }
  return cases;
}

}  // namespace sok
