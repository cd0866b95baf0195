#include "host/runner/validate/validate.h"

#include <algorithm>
#include <map>
#include <span>

#include "host/runner/validate/case_runner.h"
#include "host/runner/validate/validate_plan.h"

namespace sok {
namespace {

constexpr CheckKind kLanguages = {"languages", "every language has all texts, and none too long"};

// What one run of a command on a sound host tells.
constexpr CheckKind kRunKinds[] = {
    {"runs", "commands come to their end"},
    {"frames", "every frame of the host is freed once, and not used afterwards"},
    {"edits", "edits and mass edits are closed, once each, and nothing is changed beside them"},
    {"calls", "host calls bear the interface version and come from the host's thread"},
    {"entries", "what is saved can stand in a score"},
    {"selection", "nothing but what is selected is changed"},
    {"answers", "1 when something was changed, else 0"},
    {"document", "the current part and the instruments are left as they were"},
    {"alerts", "alerts are texts, not their keys"},
};
constexpr CheckKind kOtherCommandKinds[] = {
    {"aliases", "Ext_invoke runs the command that SonkelExtensionInvoke runs"},
    {"missing", "hosts that lack an entry point, each in turn"},
    {"failing", "hosts that refuse a call, each in turn"},
    {"random", "hosts that answer at random"},
};

bool IsRunKind(std::string_view kind) {
  return std::ranges::find(kRunKinds, kind, &CheckKind::name) != std::end(kRunKinds);
}

bool RunsSoundly(const CaseAnswer& answer) { return answer.failure.empty() && answer.findings.empty(); }

// Runs the checks one kind after the other: what a kind finds decides which others make sense.
class Validation {
 public:
  Validation(const ValidateOptions& options, const Document& score) : options_(options), score_(score) {}

  ValidationReport Run() {
    std::vector<PlannedCase> cases = ExtensionCases();
    const auto symbols = std::ranges::find(cases, "symbols", &PlannedCase::kind);
    const PlannedCase loading{"", "", [](CheckHost&, CaseAnswer&) {}};
    const std::vector<CaseAnswer> first = RunCases({loading, *symbols}, options_, score_, false);
    if (!first[0].failure.empty()) return End(cases[0], first[0], "the bundle cannot be loaded");
    if (!first[1].failure.empty()) return End(*symbols, first[1], "names that the host needs are missing");
    std::erase_if(cases, [this](const PlannedCase& check) { return !Wanted(check.kind); });
    Check(cases);
    CheckLanguages();
    CheckCommands(first[0].command_count);
    return report_;
  }

 private:
  bool Wanted(std::string_view kind) const {
    if (options_.only) return options_.only->kind == kind;
    return options_.kinds.empty() || std::ranges::find(options_.kinds, kind) != options_.kinds.end();
  }

  // There is no sense in going on.
  ValidationReport End(const PlannedCase& check, const CaseAnswer& answer, const char* why) {
    Record(check, answer.failure, answer.last_call);
    for (const CheckKind& kind : CheckKinds()) {
      if (kind.name != check.kind) Skip(kind.name, why);
    }
    return report_;
  }

  void CheckLanguages() {
    if (!Wanted(kLanguages.name)) return;
    const std::vector<PlannedCase> cases = LanguageCases(options_.plugin);
    if (cases.empty()) Skip(kLanguages.name, "the bundle has no folder of a language with Localizable.strings");
    Check(cases);
  }

  void CheckCommands(int command_count) {
    const auto wanted = [this](const CheckKind& kind) { return Wanted(kind.name); };
    if (std::ranges::none_of(kRunKinds, wanted) && std::ranges::none_of(kOtherCommandKinds, wanted)) return;
    const std::vector<SoundCommand> sound = CheckRuns(RunsOfCommands(command_count));
    CheckSurplusEnds(sound);
    if (Wanted("aliases")) Check(AliasCases(sound));
    CheckFaultyHosts(sound);
  }

  // Runs on sound hosts: each is a case of every kind that it tells something of. The commands without a fault.
  std::vector<SoundCommand> CheckRuns(std::vector<PlannedCase> cases) {
    Number(cases);
    numbers_["edits"] = numbers_["runs"];  // cases beside these runs are counted on
    const bool one = options_.only && IsRunKind(options_.only->kind) && options_.only->number < numbers_["runs"];
    if (one) KeepAskedFor(cases);
    const std::vector<CaseAnswer> answers = RunCases(cases, options_, score_, one && options_.in_process);
    for (std::size_t i = 0; i < cases.size(); ++i) {
      for (const CheckKind& kind : kRunKinds) RecordRun(cases[i], answers[i], kind.name);
    }
    return SoundAmong(cases, answers);
  }

  void RecordRun(PlannedCase check, const CaseAnswer& answer, std::string_view kind) {
    check.kind = kind;
    if (kind == "runs") return Record(check, answer.failure, answer.last_call);
    if (!answer.failure.empty()) return Skip(kind, check.name + " does not come to its end");
    const auto finding = answer.findings.find(kind);
    Record(check, finding != answer.findings.end() ? finding->second : "");
  }

  // Each command has its runs one after the other, that on the whole score first.
  std::vector<SoundCommand> SoundAmong(const std::vector<PlannedCase>& cases, const std::vector<CaseAnswer>& answers) {
    std::vector<SoundCommand> sound;
    for (std::size_t i = 0; i + std::size(kScopes) <= answers.size(); i += std::size(kScopes)) {
      if (std::ranges::all_of(std::span(answers).subspan(i, std::size(kScopes)), RunsSoundly)) {
        sound.push_back({cases[i].command, answers[i]});
        continue;
      }
      for (const CheckKind& kind : kOtherCommandKinds) {
        Skip(kind.name, CommandName(cases[i].command) + " fails on a sound host");
      }
    }
    return sound;
  }

  void CheckSurplusEnds(const std::vector<SoundCommand>& commands) {
    const auto starter =
        std::ranges::find_if(commands, [](const SoundCommand& command) { return command.answer.edits_asked > 0; });
    if (!Wanted("edits") || starter == commands.end()) return;
    Check(SurplusEndCases(commands, starter->number), [this](const PlannedCase& check, const CaseAnswer& answer) {
      if (!answer.last_call.starts_with(HostWatch::kInterrupts)) return false;
      Skip(check.kind, check.name + ": no exception can be thrown through it to find out");
      return true;
    });
  }

  void CheckFaultyHosts(const std::vector<SoundCommand>& commands) {
    std::vector<PlannedCase> cases;
    const auto add = [&cases](const std::vector<PlannedCase>& more) {
      cases.insert(cases.end(), more.begin(), more.end());
    };
    if (Wanted("missing") && !commands.empty()) add(MissingCases(commands));
    for (const SoundCommand& command : commands) {
      if (command.answer.calls.empty()) Skip("failing", CommandName(command.number) + " makes no host call");
      if (Wanted("failing")) add(FailingCases(command, options_.refusals));
      if (Wanted("random")) add(RandomCases(command.number, options_.rounds, options_.seed));
    }
    if (options_.rounds == 0) Skip("random", "no rounds are asked for");
    Check(cases);
  }

  // Numbers the cases of each kind, runs those that are asked for and records what they find, but where `skips` says
  // that that means nothing.
  using Skips = std::function<bool(const PlannedCase& check, const CaseAnswer& answer)>;
  void Check(
      std::vector<PlannedCase> cases,
      const Skips& skips = [](const PlannedCase&, const CaseAnswer&) { return false; }) {
    Number(cases);
    if (options_.only) KeepAskedFor(cases);
    const std::vector<CaseAnswer> answers = RunCases(cases, options_, score_, options_.in_process);
    for (std::size_t i = 0; i < cases.size(); ++i) {
      if (!skips(cases[i], answers[i])) Record(cases[i], answers[i].failure, answers[i].last_call);
    }
  }

  void Number(std::vector<PlannedCase>& cases) {
    for (PlannedCase& check : cases) check.number = numbers_[check.kind]++;
  }

  void KeepAskedFor(std::vector<PlannedCase>& cases) const {
    std::erase_if(cases, [this](const PlannedCase& check) { return check.number != options_.only->number; });
  }

  // Keeps the results that are asked for, and every failure.
  void Record(const PlannedCase& check, const std::string& failure, const std::string& last_call = {}) {
    const bool asked_for = Wanted(check.kind) && (!options_.only || options_.only->number == check.number);
    if (!asked_for && failure.empty()) return;
    report_.results.push_back({check.kind, check.number, check.name, failure, last_call});
  }

  void Skip(std::string_view kind, const std::string& why) {
    if (Wanted(kind)) report_.skipped.push_back({std::string(kind), why});
  }

  const ValidateOptions& options_;
  const Document& score_;
  ValidationReport report_;
  std::map<std::string, int> numbers_;  // how many cases a kind has so far
};

}  // namespace

const std::vector<CheckKind>& CheckKinds() {
  static const std::vector<CheckKind> kinds = [] {
    std::vector<CheckKind> all;
    for (const ExtensionCheck& check : ExtensionChecks()) all.push_back({check.name, check.what});
    all.push_back(kLanguages);
    all.insert(all.end(), std::begin(kRunKinds), std::end(kRunKinds));
    all.insert(all.end(), std::begin(kOtherCommandKinds), std::end(kOtherCommandKinds));
    return all;
  }();
  return kinds;
}

ValidationReport Validate(const ValidateOptions& options, const Document& score) {
  return Validation(options, score).Run();
}

}  // namespace sok
