// How sokrun's help and its messages about the command line read.
#pragma once

namespace CLI {
class App;
}

namespace sok {

// To be called before subcommands are added: they take these over.
//
// In help, an option that takes a value shows its option_text, and its default behind the description.
void SetUpHelp(CLI::App& app);

// To be called when all commands are added. An option that takes a value refuses an empty one, which would else mean
// that it was not given.
void RefuseEmptyValues(CLI::App& app);

// Adds the commands help and version.
void AddHelpCommands(CLI::App& app, const char* version);

}  // namespace sok
