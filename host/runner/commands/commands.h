// The subcommands of sokrun: each topic adds its own to the command line, in a file named after it.
#pragma once

#include <CLI/CLI.hpp>
#include <iosfwd>
#include <memory>
#include <string>

#include "host/musicxml/score.h"

namespace sok {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitBadInput = 1;     // something could not be read, run or written
inline constexpr int kExitUsage = 2;        // the command line makes no sense
inline constexpr int kExitWouldChange = 3;  // --check: something would change

// Adds a subcommand. Its callback does the work, prints results on stdout and messages on stderr, and sets `exit_code`
// when that is not 0; errors it throws.
void AddRunCommands(CLI::App& app, int& exit_code);  // fill, clear, run
void AddListCommand(CLI::App& app, int& exit_code);
void AddInfoCommand(CLI::App& app, int& exit_code);
void AddScanCommand(CLI::App& app, int& exit_code);
void AddInspectCommand(CLI::App& app, int& exit_code);
void AddRecordsCommand(CLI::App& app, int& exit_code);
void AddTextsCommand(CLI::App& app, int& exit_code);
void AddShapesCommand(CLI::App& app, int& exit_code);
void AddValidateCommand(CLI::App& app, int& exit_code);

// Tables for a reader of a terminal, for the commands of the same names and for `inspect`. The score is read with
// ReadOptions::document_data.
void PrintRecords(std::ostream& out, const Score& score);
void PrintTexts(std::ostream& out, const Score& score);
void PrintShapes(std::ostream& out, const Score& score);

// The score of a file, or of stdin for "-". Throws Error.
std::unique_ptr<Score> ReadScore(const std::string& path, const ReadOptions& options = {});

}  // namespace sok
