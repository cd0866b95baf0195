// The subcommands of sokrun: each topic adds its own to the command line, in a file named after it.
#pragma once

#include <iosfwd>

#include "host/musicxml/score.h"

namespace CLI {
class App;
}

namespace sok {

// Adds a subcommand. Its callback does the work, prints results on stdout and messages on stderr, and sets `exit_code`
// (exit_codes.h) when that is not 0; it throws Error.
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

}  // namespace sok
