#include "host/runner/validate/case_runner.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/errors.h"
#include "host/runner/run/batch.h"
#include "host/runner/validate/crash_watch.h"
#include "host/runner/validate/last_words.h"

namespace sok {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(CaseAnswer, failure, last_call, findings, command_count, edits_asked, trace, calls)

namespace {

using Say = std::function<void(const std::string&)>;

// An answer that came from a process which a foreign extension had for itself.
CaseAnswer ParseAnswer(const std::string& text) try {
  return nlohmann::json::parse(text).get<CaseAnswer>();
} catch (const nlohmann::json::exception&) {
  return {kSenselessAnswer};
}

std::string AnswerText(const CaseAnswer& answer) {
  return nlohmann::json(answer).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

// What is being thrown, where that is no exception of the standard library's kind.
std::string NameOfThrown() {
  const std::type_info* const type = abi::__cxa_current_exception_type();
  if (type == nullptr) return "threw something that is no exception";
  const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type->name(), nullptr, nullptr, nullptr),
                                                    std::free);
  return std::string("threw something that is no exception: ") + (name != nullptr ? name.get() : type->name());
}

void RunOnHost(const PlannedCase& check, CheckHost& host, CaseAnswer& answer) {
  check.run(host, answer);
  answer.command_count = static_cast<int>(host.extension.Commands().size());
  answer.calls = host.watch.calls();
  answer.trace = host.watch.trace();
  answer.edits_asked = host.watch.edits_asked();
}

CaseAnswer RunCase(const PlannedCase& check, const ValidateOptions& options, const Document& score, const Say& say) {
  CaseAnswer answer;
  if (!check.language.empty()) setenv("LANGUAGE", check.language.c_str(), 1);
  say("before a command was run");
  try {
    CheckHost host(options.plugin, score, check.fault, options.guard_frames);
    host.watch.TellCalls(say);
    RunOnHost(check, host, answer);
  } catch (const Error& error) {
    answer.failure = error.what();
  } catch (const std::exception& error) {
    answer.failure = std::string("threw an exception: ") + error.what();
  } catch (...) {
    answer.failure = NameOfThrown();
  }
  return answer;
}

std::vector<CaseAnswer> RunInThisProcess(const std::vector<PlannedCase>& cases, const ValidateOptions& options,
                                         const Document& score) {
  std::vector<CaseAnswer> answers;
  for (const PlannedCase& check : cases) answers.push_back(RunCase(check, options, score, [](const std::string&) {}));
  return answers;
}

}  // namespace

std::vector<CaseAnswer> RunCases(const std::vector<PlannedCase>& cases, const ValidateOptions& options,
                                 const Document& score, bool in_this_process) {
  if (in_this_process) return RunInThisProcess(cases, options, score);
  std::vector<CaseAnswer> answers(cases.size());
  LastWords words(cases.size());
  const char* const where = options.guard_frames ? "" : "; a sanitizer's report would be on stderr";
  const auto work = [&](std::size_t i) {
    TellOfCrashes(options.guard_frames);
    const Say say = [&words, i](const std::string& text) { words.Say(i, text.c_str()); };
    const CaseAnswer answer = RunCase(cases[i], options, score, say);
    EndCopies();
    return AnswerText(answer);
  };
  const auto done = [&](std::size_t i, const std::string& text, const std::string& failure) {
    answers[i] = failure.empty() ? ParseAnswer(text) : CaseAnswer{failure, words.Of(i) + where};
  };
  RunInProcesses(cases.size(), {options.jobs, options.seconds}, {work, done});
  return answers;
}

}  // namespace sok
