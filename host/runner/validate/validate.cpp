#include "host/runner/validate/validate.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/errors.h"
#include "host/runner/report/text.h"
#include "host/runner/run/batch.h"
#include "host/runner/validate/last_words.h"
#include "host/runner/validate/validate_checks.h"
#include "host/runner/validate/validate_commands.h"

namespace sok {
namespace {

constexpr CheckKind kLanguages = {"languages", "every language has all texts, and none too long"};

// What one run of a command on a sound host tells.
constexpr CheckKind kRunKinds[] = {
    {"runs", "commands come to their end"},
    {"frames", "every frame of the host is freed once, and not used afterwards"},
    {"edits", "edits and mass edits are closed, once each, and hold all changes or none"},
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
constexpr Scope kScopes[] = {Scope::kWholeScore, Scope::kPart};

// What a check's process tells.
struct Answer {
  std::string failure = {}, last_call = {};
  Findings findings = {};
  int commands = 0;
  int edits = 0;
  std::size_t trace = 0;
  std::vector<std::string> calls = {};

  NLOHMANN_DEFINE_TYPE_INTRUSIVE(Answer, failure, last_call, findings, commands, edits, trace, calls)
};

struct Case {
  std::string kind;
  std::string name;
  std::function<void(CheckHost& host, Answer& answer)> run;  // throws Error
  HostFault fault = {};
  std::string language = {};  // of the user; empty: as it is
  int command = 0;
  int number = 0;
};

// An answer that came from a process which a foreign extension had for itself.
Answer Understood(const std::string& text) try {
  return nlohmann::json::parse(text).get<Answer>();
} catch (const nlohmann::json::exception&) {
  return {kSenselessAnswer};
}

// What is being thrown, where that is no exception of the standard library's kind.
std::string NameOfThrown() {
  const std::type_info* const type = abi::__cxa_current_exception_type();
  if (type == nullptr) return "threw something that is no exception";
  const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type->name(), nullptr, nullptr, nullptr),
                                                    std::free);
  return std::string("threw something that is no exception: ") + (name != nullptr ? name.get() : type->name());
}

// In a check's process: who is asked about the address of a crash, and where the answer goes.
const HostWatch* crash_watch = nullptr;
std::function<void(const std::string&)> crash_say;

void TellOfFreedFrame(int signal, siginfo_t* info, void*) {
  std::signal(signal, SIG_DFL);  // the access is made again
  const std::string frame = crash_watch != nullptr ? crash_watch->FreedFrameAt(info->si_addr) : std::string();
  if (!frame.empty()) crash_say("uses the frame of " + frame + ", which it has freed");
}

// The address sanitizer's report, of which the line that sums it up is kept.
void TellOfMemoryFault(const char* report) {
  const std::string_view text = report;
  const std::size_t start = text.find("SUMMARY: ");
  if (crash_say != nullptr && start != text.npos)
    crash_say(std::string(text.substr(start, text.find('\n', start) - start)));
}

void WatchForMemoryFaults() {
  using SetCallback = void (*)(void (*)(const char*));
  const auto set = reinterpret_cast<SetCallback>(dlsym(RTLD_DEFAULT, "__asan_set_error_report_callback"));
  if (set != nullptr) set(TellOfMemoryFault);
}

void WatchForFreedFrames() {
  struct sigaction action {};
  action.sa_sigaction = TellOfFreedFrame;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGSEGV, &action, nullptr);
  sigaction(SIGBUS, &action, nullptr);
}

std::string CommandName(int command) { return "command " + std::to_string(command); }

class Validation {
 public:
  Validation(const ValidateOptions& options, const Document& score) : options_(options), score_(score) {}

  ValidationReport Run() {
    const std::vector<ExtensionCheck>& checks = ExtensionChecks();
    std::vector<Case> plan;
    for (const ExtensionCheck& check : checks) plan.push_back(Planned(check));
    const auto symbols = std::ranges::find(plan, "symbols", &Case::kind);
    const std::vector<Answer> first = InProcesses({Case{"", "", [](CheckHost&, Answer&) {}}, *symbols});
    const Answer& loaded = first[0];
    if (!loaded.failure.empty()) return End(plan[0], loaded, "the bundle cannot be loaded");
    if (!first[1].failure.empty()) return End(*symbols, first[1], "names that the host needs are missing");
    std::erase_if(plan, [this](const Case& check) { return !Wanted(check.kind); });
    Check(plan);
    CheckLanguages();
    CheckCommands(loaded.commands);
    return report_;
  }

 private:
  bool Wanted(std::string_view kind) const {
    if (options_.only) return options_.only->kind == kind;
    return options_.kinds.empty() || std::ranges::find(options_.kinds, kind) != options_.kinds.end();
  }

  // There is no sense in going on.
  ValidationReport End(const Case& check, const Answer& answer, const char* why) {
    Record(check, answer.failure, answer.last_call);
    for (const CheckKind& kind : CheckKinds()) {
      if (kind.name != check.kind) Skip(kind.name, why);
    }
    return report_;
  }

  static bool IsRunKind(std::string_view kind) {
    return std::ranges::find(kRunKinds, kind, &CheckKind::name) != std::end(kRunKinds);
  }

  static Case Planned(const ExtensionCheck& check) {
    return {std::string(check.name), std::string(check.what),
            [run = check.run](CheckHost& host, Answer&) { run(host); }};
  }

  static Case PlannedRun(int command, Scope scope) {
    Case check{"runs", CommandName(command),
               [=](CheckHost& host, Answer& answer) { answer.findings = RunCommand(host, command, scope); }};
    if (scope == Scope::kPart) check.name += ", part of the score";
    check.command = command;
    return check;
  }

  // On a faulty host, what any host can tell.
  static Case PlannedFault(const char* kind, int command, const std::string& name, const HostFault& fault) {
    return {kind, CommandName(command) + name,
            [command](CheckHost& host, Answer&) { CheckOnFaultyHost(host, {command}); }, fault};
  }

  static void CheckOnFaultyHost(CheckHost& host, const std::vector<int>& commands) {
    for (const int command : commands) {
      EREGION region = RegionOf(host.document, Scope::kWholeScore);
      host.extension.Invoke(command, &region);
      for (const auto& [kind, finding] : host.watch.Take()) {
        throw Error(commands.size() > 1 ? CommandName(command) + " " + finding : finding);
      }
    }
  }

  void CheckLanguages() {
    if (!Wanted(kLanguages.name)) return;
    std::vector<Case> plan;
    for (const std::string& language : Languages(options_.plugin)) {
      Case check{std::string(kLanguages.name), language,
                 [language](CheckHost& host, Answer&) { CheckLanguage(host, language); }};
      check.language = language;
      plan.push_back(std::move(check));
    }
    if (plan.empty()) Skip(kLanguages.name, "the bundle has no folder of a language with Localizable.strings");
    Check(plan);
  }

  void CheckCommands(int commands) {
    const auto wanted = [this](const CheckKind& kind) { return Wanted(kind.name); };
    if (std::ranges::none_of(kRunKinds, wanted) && std::ranges::none_of(kOtherCommandKinds, wanted)) return;
    std::vector<Case> plan;
    for (int command = 0; command < commands; ++command) {
      for (const Scope scope : kScopes) plan.push_back(PlannedRun(command, scope));
    }
    const std::vector<Answer> answers = CheckRuns(plan);
    std::vector<int> sound;
    std::vector<Answer> own;  // of the sound commands, on the whole score
    for (std::size_t i = 0; i < answers.size(); i += std::size(kScopes)) {
      if (RunsSoundly(answers[i]) && RunsSoundly(answers[i + 1])) {
        sound.push_back(plan[i].command);
        own.push_back(answers[i]);
      } else {
        for (const CheckKind& kind : kOtherCommandKinds)
          Skip(kind.name, CommandName(plan[i].command) + " fails on a sound host");
      }
    }
    CheckSurplusEnds(sound, own);
    CheckAliases(sound, own);
    CheckFaultyHosts(sound, own);
  }

  static bool RunsSoundly(const Answer& answer) { return answer.failure.empty() && answer.findings.empty(); }

  // Runs on sound hosts: each is a case of every kind that it tells something of.
  std::vector<Answer> CheckRuns(std::vector<Case>& plan) {
    Number(plan);
    if (options_.only && IsRunKind(options_.only->kind)) {
      std::erase_if(plan, [this](const Case& check) { return check.number != options_.only->number; });
    }
    std::vector<Answer> answers = options_.in_process && options_.only && IsRunKind(options_.only->kind)
                                      ? InThisProcess(plan)
                                      : InProcesses(plan);
    for (std::size_t i = 0; i < plan.size(); ++i) {
      for (const CheckKind& kind : kRunKinds) RecordRun(plan[i], answers[i], kind.name);
    }
    return answers;
  }

  void RecordRun(Case check, const Answer& answer, std::string_view kind) {
    check.kind = kind;
    if (kind == "runs") return Record(check, answer.failure, answer.last_call);
    if (!answer.failure.empty()) return Skip(kind, check.name + " does not come to its end");
    const auto finding = answer.findings.find(kind);
    Record(check, finding != answer.findings.end() ? finding->second : "");
  }

  void CheckSurplusEnds(const std::vector<int>& commands, const std::vector<Answer>& answers) {
    const auto starter = std::ranges::find_if(answers, [](const Answer& answer) { return answer.edits > 0; });
    if (!Wanted("edits") || starter == answers.end()) return;
    const int first = commands[static_cast<std::size_t>(starter - answers.begin())];
    std::vector<Case> plan;
    for (const int command : commands) {
      plan.push_back({"edits", CommandName(command) + ", while other edits are open",
                      [=](CheckHost& host, Answer&) { CheckEnds(host, first, command); }});
    }
    Check(plan, [this](const Case& check, const Answer& answer) {
      if (!answer.last_call.starts_with(HostWatch::kInterrupts)) return false;
      Skip(check.kind, check.name + ": no exception can be thrown through it to find out");
      return true;
    });
  }

  // An alias that runs another command makes that one's calls.
  void CheckAliases(const std::vector<int>& commands, const std::vector<Answer>& own) {
    if (!Wanted("aliases")) return;
    std::vector<Case> plan;
    for (std::size_t i = 0; i < commands.size(); ++i) {
      std::map<std::size_t, int> others;
      for (std::size_t j = 0; j < commands.size(); ++j) others.emplace(own[j].trace, commands[j]);
      plan.push_back({"aliases", CommandName(commands[i]),
                      [=, command = commands[i], trace = own[i].trace](CheckHost& host, Answer&) {
                        RunCommand(host, command, Scope::kWholeScore, "Ext_invoke");
                        const auto other = others.find(host.watch.trace());
                        if (other == others.end() || host.watch.trace() == trace) return;
                        throw Error("Ext_invoke runs " + CommandName(other->second));
                      }});
    }
    Check(plan);
  }

  void CheckFaultyHosts(const std::vector<int>& commands, const std::vector<Answer>& own) {
    std::vector<Case> plan;
    if (Wanted("missing") && !commands.empty()) PlanMissing(commands, plan);
    for (std::size_t i = 0; i < commands.size(); ++i) {
      if (Wanted("failing")) PlanFailing(commands[i], own[i], plan);
      if (Wanted("random")) PlanRandom(commands[i], plan);
    }
    if (Wanted("random") && options_.rounds == 0) Skip("random", "no rounds are asked for");
    Check(plan);
  }

  // Each entry point is missed by all commands in one process.
  static void PlanMissing(const std::vector<int>& commands, std::vector<Case>& plan) {
    for (const std::string& name : EntryPointNames()) {
      const auto run = [commands](CheckHost& host, Answer&) { CheckOnFaultyHost(host, commands); };
      plan.push_back({"missing", "without " + name, run, {.hidden = name}});
    }
  }

  void PlanFailing(int command, const Answer& sound, std::vector<Case>& plan) {
    const std::size_t refusals = std::min(sound.calls.size(), static_cast<std::size_t>(options_.refusals));
    if (refusals == 0) Skip("failing", CommandName(command) + " makes no host call");
    for (std::size_t i = 0; i < refusals; ++i) {
      const std::size_t call = i * sound.calls.size() / refusals;
      plan.push_back(PlannedFault("failing", command,
                                  ", call " + std::to_string(call) + " (" + sound.calls[call] + ") refused",
                                  {.refused_call = static_cast<long>(call)}));
    }
  }

  void PlanRandom(int command, std::vector<Case>& plan) const {
    for (int round = 0; round < options_.rounds; ++round) {
      const unsigned int seed = options_.seed + static_cast<unsigned int>(round);
      plan.push_back(PlannedFault("random", command, ", seed " + std::to_string(seed), {.seed = seed}));
    }
  }

  // Numbers the cases of each kind, runs those that are asked for and records what they find, but where `skips` says
  // that that means nothing.
  using Skips = std::function<bool(const Case& check, const Answer& answer)>;
  void Check(
      std::vector<Case> plan, const Skips& skips = [](const Case&, const Answer&) { return false; }) {
    Number(plan);
    if (options_.only) std::erase_if(plan, [this](const Case& check) { return check.number != options_.only->number; });
    const std::vector<Answer> answers = options_.in_process ? InThisProcess(plan) : InProcesses(plan);
    for (std::size_t i = 0; i < plan.size(); ++i) {
      if (!skips(plan[i], answers[i])) Record(plan[i], answers[i].failure, answers[i].last_call);
    }
  }

  void Number(std::vector<Case>& plan) {
    for (Case& check : plan) check.number = numbers_[check.kind]++;
  }

  std::vector<Answer> InThisProcess(const std::vector<Case>& plan) const {
    std::vector<Answer> answers;
    for (const Case& check : plan) answers.push_back(Perform(check, [](const std::string&) {}));
    return answers;
  }

  std::vector<Answer> InProcesses(const std::vector<Case>& plan) const {
    std::vector<Answer> answers(plan.size());
    LastWords words(plan.size());
    const char* const where = options_.guard_frames ? "" : "; a sanitizer's report would be on stderr";
    const auto work = [&](std::size_t i) {
      if (options_.guard_frames) WatchForFreedFrames();
      WatchForMemoryFaults();
      const Answer answer = Perform(plan[i], [&, i](const std::string& text) { words.Say(i, text.c_str()); });
      EndCopies();
      return nlohmann::json(answer).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
    };
    const auto done = [&](std::size_t i, const std::string& text, const std::string& failure) {
      answers[i] = failure.empty() ? Understood(text) : Answer{failure, words.Of(i) + where};
    };
    RunInProcesses(plan.size(), {options_.jobs, options_.seconds}, {work, done});
    return answers;
  }

  Answer Perform(const Case& check, const std::function<void(const std::string&)>& say) const {
    Answer answer;
    if (!check.language.empty()) setenv("LANGUAGE", check.language.c_str(), 1);
    say("before a command was run");
    try {
      CheckHost host(options_.plugin, score_, check.fault, options_.guard_frames);
      host.watch.TellCalls(say);
      crash_watch = &host.watch;
      crash_say = say;
      check.run(host, answer);
      answer.commands = static_cast<int>(host.extension.Commands().size());
      answer.calls = host.watch.calls();
      answer.trace = host.watch.trace();
      answer.edits = host.watch.edits_asked();
    } catch (const Error& error) {
      answer.failure = error.what();
    } catch (const std::exception& error) {
      answer.failure = std::string("threw an exception: ") + error.what();
    } catch (...) {
      answer.failure = NameOfThrown();
    }
    crash_watch = nullptr;
    return answer;
  }

  // Keeps the results that are asked for, and every failure.
  void Record(const Case& check, const std::string& failure, const std::string& last_call = {}) {
    if (!Wanted(check.kind) && failure.empty()) return;
    report_.results.push_back({check.kind, check.number, check.name, failure, last_call});
  }

  void Skip(std::string_view kind, const std::string& why) {
    if (Wanted(kind)) report_.skipped.push_back({std::string(kind), why});
  }

  const ValidateOptions& options_;
  const Document& score_;
  ValidationReport report_;
  std::map<std::string, int> numbers_;
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
