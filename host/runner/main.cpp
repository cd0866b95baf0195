// sokrun: runs extension bundles on MusicXML scores.
#include <cstdio>
#include <exception>
#include <iostream>
#include <new>

#include "host/runner/commands.h"

namespace {

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

int Fail(const char* message, int exit_code) {
  std::cerr << "sokrun: " << message << '\n';
  return exit_code;
}

}  // namespace

int main(int count, char** arguments) {
  std::ios::sync_with_stdio(false);
  int exit_code = sok::kExitSuccess;
  CLI::App app("Runs extension bundles on MusicXML scores: fills empty measures with rests, or clears them.", "sokrun");
  app.set_version_flag("--version", SOKRUN_VERSION);
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
  try {
    app.parse(count, arguments);
    return exit_code;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? sok::kExitSuccess : sok::kExitUsage;
  } catch (const sok::UsageError& error) {
    return Fail(error.what(), sok::kExitUsage);
  } catch (const std::bad_alloc&) {
    return Fail("not enough memory", sok::kExitBadInput);
  } catch (const std::exception& error) {
    return Fail(error.what(), sok::kExitBadInput);
  }
}
