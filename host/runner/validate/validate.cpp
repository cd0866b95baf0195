#include "host/runner/validate/validate.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <span>

#include "host/runner/run/batch.h"
#include "host/runner/validate/validate_checks.h"

namespace sok {
namespace {

constexpr CheckKind kCommandKinds[] = {
    {"frames", "every frame of the host is freed once"},
    {"edits", "edits and mass edits are closed"},
    {"call-versions", "every call of the host carries the interface version"},
    {"missing", "hosts that lack an entry point, each in turn"},
    {"failing", "hosts that refuse a call, each in turn"},
    {"random", "hosts that answer at random"},
};

std::string FrameFault(CheckHost& host, int command) {
  host.RunCommand(command);
  return host.watch.FrameFault();
}

std::string EditFault(CheckHost& host, int command) {
  host.RunCommand(command);
  return host.watch.EditFault();
}

std::string VersionFault(CheckHost& host, int command) {
  host.RunCommand(command);
  return host.watch.VersionFault();
}

std::string AnyFault(CheckHost& host, int command) {
  host.RunCommand(command);
  for (std::string fault : {host.watch.FrameFault(), host.watch.EditFault(), host.watch.VersionFault()}) {
    if (!fault.empty()) return fault;
  }
  return {};
}

struct Check {
  std::string kind;
  std::string name;
  HostFault fault;
  std::function<std::string(CheckHost& host)> run;  // answers what is wrong
};

// What a check's process tells.
struct Answer {
  std::string failure;
  int commands = 0;
  std::vector<std::string> calls;

  NLOHMANN_DEFINE_TYPE_INTRUSIVE(Answer, failure, commands, calls)
};

// An answer that came from a process which a foreign extension had for itself.
Answer Understood(const std::string& text) try {
  return nlohmann::json::parse(text).get<Answer>();
} catch (const nlohmann::json::exception&) {
  return {"the process that ran the extension gave an answer that makes no sense", 0, {}};
}

class Validation {
 public:
  Validation(const ValidateOptions& options, const Document& score) : options_(options), score_(score) {}

  std::vector<CheckResult> Run() {
    const std::vector<ExtensionCheck>& checks = ExtensionChecks();
    const Answer loaded = RunAll({Planned(checks[0])})[0];
    if (!loaded.failure.empty()) return results_;
    std::vector<Check> plan;
    for (std::size_t i = 1; i < checks.size(); ++i) {
      if (Wanted(checks[i].name)) plan.push_back(Planned(checks[i]));
    }
    RunAll(plan);
    RunCommands(loaded.commands);
    return results_;
  }

 private:
  bool Wanted(std::string_view kind) const {
    return options_.kinds.empty() || std::ranges::find(options_.kinds, kind) != options_.kinds.end();
  }

  static Check Planned(const ExtensionCheck& check) {
    return {std::string(check.name), std::string(check.what), {}, [run = check.run](CheckHost& host) {
              run(host);
              return std::string();
            }};
  }

  static Check Planned(const char* kind, int command, const std::string& name, const HostFault& fault,
                       std::string (*run)(CheckHost&, int)) {
    return {kind, "command " + std::to_string(command) + name, fault,
            [run, command](CheckHost& host) { return run(host, command); }};
  }

  void RunCommands(int commands) {
    if (std::ranges::none_of(kCommandKinds, [this](const CheckKind& kind) { return Wanted(kind.name); })) return;
    std::vector<Check> plan;
    for (int command = 0; command < commands; ++command) {
      plan.push_back(Planned("frames", command, "", {}, FrameFault));
      plan.push_back(Planned("edits", command, "", {}, EditFault));
      plan.push_back(Planned("call-versions", command, "", {}, VersionFault));
    }
    const std::vector<Answer> answers = RunAll(plan);
    const std::size_t each = commands > 0 ? answers.size() / static_cast<std::size_t>(commands) : 0;
    plan.clear();
    std::vector<int> sound;
    for (int command = 0; command < commands; ++command) {
      const std::span own = std::span(answers).subspan(each * static_cast<std::size_t>(command), each);
      if (!std::ranges::all_of(own, &std::string::empty, &Answer::failure)) continue;
      sound.push_back(command);
      PlanFaults(command, own[0], plan);
    }
    if (Wanted("missing") && !sound.empty()) PlanMissing(sound, plan);
    RunAll(plan);
  }

  // Each entry point is missed by all commands in one process.
  static void PlanMissing(const std::vector<int>& commands, std::vector<Check>& plan) {
    const auto run = [commands](CheckHost& host) {
      for (const int command : commands) {
        const std::string fault = AnyFault(host, command);
        if (!fault.empty()) return "command " + std::to_string(command) + " " + fault;
      }
      return std::string();
    };
    for (const std::string& name : EntryPointNames()) {
      HostFault fault;
      fault.hidden = name;
      plan.push_back(Check{"missing", "without " + name, fault, run});
    }
  }

  void PlanFaults(int command, const Answer& sound, std::vector<Check>& plan) const {
    const std::size_t refusals = std::min(sound.calls.size(), static_cast<std::size_t>(options_.refusals));
    for (std::size_t i = 0; Wanted("failing") && i < refusals; ++i) {
      const std::size_t call = i * sound.calls.size() / refusals;
      const std::string name = ", call " + std::to_string(call) + " (" + sound.calls[call] + ") refused";
      plan.push_back(Planned("failing", command, name, {.refused_call = static_cast<long>(call)}, AnyFault));
    }
    for (int round = 0; Wanted("random") && round < options_.rounds; ++round) {
      const unsigned int seed = options_.seed + static_cast<unsigned int>(round);
      plan.push_back(Planned("random", command, ", seed " + std::to_string(seed), {.seed = seed}, AnyFault));
    }
  }

  std::string Perform(const Check& check) const {
    Answer answer;
    try {
      CheckHost host(options_.plugin, score_, check.fault);
      answer.failure = check.run(host);
      answer.commands = static_cast<int>(host.extension.Commands().size());
      answer.calls = host.watch.calls();
    } catch (const std::exception& error) {
      answer.failure = error.what();
    } catch (...) {
      answer.failure = "throws something that is no exception";
    }
    EndCopies();
    return nlohmann::json(answer).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
  }

  // Runs checks and keeps the results that are asked for, and every failure.
  std::vector<Answer> RunAll(const std::vector<Check>& checks) {
    std::vector<Answer> answers(checks.size());
    const auto done = [&](std::size_t i, const std::string& text, const std::string& failure) {
      answers[i] = failure.empty() ? Understood(text) : Answer{failure, 0, {}};
      if (!Wanted(checks[i].kind) && answers[i].failure.empty()) return;
      results_.push_back({checks[i].kind, checks[i].name, answers[i].failure});
    };
    const auto work = [&](std::size_t i) { return Perform(checks[i]); };
    RunInProcesses(checks.size(), {options_.jobs, options_.seconds}, {work, done});
    return answers;
  }

  const ValidateOptions& options_;
  const Document& score_;
  std::vector<CheckResult> results_;
};

}  // namespace

const std::vector<CheckKind>& CheckKinds() {
  static const std::vector<CheckKind> kinds = [] {
    std::vector<CheckKind> all;
    for (const ExtensionCheck& check : ExtensionChecks()) all.push_back({check.name, check.what});
    all.insert(all.end(), std::begin(kCommandKinds), std::end(kCommandKinds));
    return all;
  }();
  return kinds;
}

std::vector<CheckResult> Validate(const ValidateOptions& options, const Document& score) {
  return Validation(options, score).Run();
}

}  // namespace sok
