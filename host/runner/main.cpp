// sokrun: runs extension bundles on MusicXML scores.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>

#include "host/errors.h"
#include "host/runner/commands/commands.h"
#include "host/runner/commands/help.h"
#include "host/runner/exit_codes.h"
#include "host/runner/report/shown_text.h"
#include "host/runner/run/memory.h"

namespace {

constexpr const char* kVersion = "sokrun " SOKRUN_VERSION;

constexpr const char* kExamples =
    "Examples:\n"
    "  sokrun fill song.musicxml -o filled.musicxml      whole-measure rests into empty measures\n"
    "  sokrun clear song.mxl --in-place --backup         and out again\n"
    "  sokrun fill scores/ --output-dir filled/ -j 4     a whole folder\n"
    "  sokrun fill scores/ --check --quiet               exit 3 when something would change\n"
    "  sokrun scan song.mxl                              what is empty, what only looks like a bar rest\n"
    "\n"
    "Results go to stdout, messages to stderr. Exit codes: 0 done, changed or not; 1 something could not be\n"
    "read, run or written; 2 the command line makes no sense; 3 --check: something would change.\n"
    "`sokrun COMMAND --help` tells more, `man sokrun` everything.";

// A stream that came closed fails when it is used, as it should: nothing else is ever opened in its place.
void OccupyStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

int Run(int count, char** arguments) {
  int exit_code = sok::kExitSuccess;
  CLI::App app("Runs extension bundles on MusicXML scores: fills empty measures with rests, or clears them.", "sokrun");
  sok::SetUpHelp(app);
  app.set_version_flag("-V,--version", kVersion, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.require_subcommand(1);
  app.footer(kExamples);
  sok::AddRunCommands(app, exit_code);
  sok::AddListCommand(app, exit_code);
  sok::AddInfoCommand(app, exit_code);
  sok::AddScanCommand(app, exit_code);
  sok::AddInspectCommand(app, exit_code);
  sok::AddRecordsCommand(app, exit_code);
  sok::AddTextsCommand(app, exit_code);
  sok::AddShapesCommand(app, exit_code);
  sok::AddValidateCommand(app, exit_code);
  sok::AddHelpCommands(app, kVersion);
  sok::RefuseEmptyValues(app);
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    if (app.exit(error) != 0) exit_code = sok::kExitUsage;
  }
  if (std::fflush(stdout) != 0 || !std::cout.flush()) throw sok::Error("stdout: cannot be written");
  return exit_code;
}

int Fail(const char* message, int exit_code) {
  std::cerr << "sokrun: " << sok::ShownText(message) << '\n';
  return exit_code;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    OccupyStandardStreams();
    sok::EndWhenMemoryRunsOut();
    std::ios::sync_with_stdio(false);
    return Run(count, arguments);
  } catch (const sok::UsageError& error) {
    return Fail(error.what(), sok::kExitUsage);
  } catch (const std::exception& error) {
    return Fail(error.what(), sok::kExitBadInput);
  }
}
