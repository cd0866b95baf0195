// Which cases each kind of check has.
#pragma once

#include <string>
#include <vector>

#include "host/runner/validate/check_case.h"
#include "host/runner/validate/validate_commands.h"

namespace sok {

// "command 1".
std::string CommandName(int command);

// Of the extension as a whole: one of each kind. Of its texts: one a language.
std::vector<PlannedCase> ExtensionCases();
std::vector<PlannedCase> LanguageCases(const std::string& plugin);

// Runs on a sound host, of every command on the whole score, on a part of it and on its last measure, in this order.
inline constexpr Scope kScopes[] = {Scope::kWholeScore, Scope::kPart, Scope::kEnd};
std::vector<PlannedCase> RunsOfCommands(int command_count);

// A command that a sound host finds no fault with, and what its run on the whole score answered.
struct SoundCommand {
  int number = 0;
  CaseAnswer answer;
};

// Whether a command ends edits that others opened; `starter` is one that opens an edit.
std::vector<PlannedCase> SurplusEndCases(const std::vector<SoundCommand>& commands, int starter);

// Whether the alias runs the same command: one that runs another makes that one's calls.
std::vector<PlannedCase> AliasCases(const std::vector<SoundCommand>& commands);

// Faulty hosts. Each entry point is missed by all commands in one process; `most` refusals are spread evenly over the
// calls of a command; `rounds` seeds count up from `seed`.
std::vector<PlannedCase> MissingCases(const std::vector<SoundCommand>& commands);
std::vector<PlannedCase> FailingCases(const SoundCommand& command, int most);
std::vector<PlannedCase> RandomCases(int command, int rounds, unsigned int seed);

}  // namespace sok
