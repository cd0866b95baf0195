#include "host/runner/commands/help.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <numeric>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/errors.h"
#include "host/runner/commands/commands.h"
#include "host/runner/report/shown_text.h"

namespace sok {
namespace {

class HelpFormatter : public CLI::Formatter {
 public:
  // What excludes or needs what is said in the description, or when it matters.
  std::string make_option(const CLI::Option* option, bool positional) const override {
    std::string name = make_option_name(option, positional);
    if (!positional && option->get_type_size() != 0) name += " " + option->get_option_text();
    std::stringstream out;
    CLI::detail::format_help(out, name, make_option_desc(option), column_width_);
    return out.str();
  }

  std::string make_option_desc(const CLI::Option* option) const override {
    const std::string standard = option->get_default_str();
    return option->get_description() + (standard.empty() ? "" : " (default: " + standard + ")");
  }

  std::string make_positionals(const CLI::App* app) const override {
    const auto positionals = app->get_options([](const CLI::Option* option) { return option->get_positional(); });
    return positionals.empty() ? "" : make_group("Arguments", true, positionals);
  }

  std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
    return CLI::detail::find_and_replace(Formatter::make_help(app, std::move(name), mode), "\n\n\n", "\n\n");
  }
};

// How many letters have to be put in, taken out or replaced to make one word of the other.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] != right[j]);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

// "there is no command fil; did you mean fill?"
std::string NoSuchCommand(const CLI::App& app, const std::string& word) {
  std::string nearest;
  std::size_t least = std::max<std::size_t>(word.size() / 2, 1) + 1;  // farther words are others
  for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
    const std::size_t distance = Distance(word, command->get_name());
    if (distance >= least) continue;
    least = distance;
    nearest = command->get_name();
  }
  return "there is no command " + word + (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

std::string Message(const CLI::App* app, const CLI::Error& error) {
  const std::vector<CLI::App*> commands = app->get_subcommands();
  const std::vector<std::string> unknown = app->remaining();
  std::string message = error.what();
  if (commands.empty() && unknown.empty()) message = "say which command";
  if (commands.empty() && !unknown.empty()) {
    const std::string& word = unknown.front();
    message = word.starts_with('-') ? "there is no option " + word : NoSuchCommand(*app, word);
  }
  const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
  return "sokrun: " + ShownLines(message) + "\nTry `sokrun" + command + " --help`.\n";
}

}  // namespace

void SetUpHelp(CLI::App& app) {
  const auto formatter = std::make_shared<HelpFormatter>();
  formatter->label("SUBCOMMAND", "COMMAND");
  formatter->column_width(32);
  app.formatter(formatter);
  app.group("Commands");
  app.failure_message(Message);
}

void RefuseEmptyValues(CLI::App& app) {
  const auto all = [](const auto*) { return true; };
  for (CLI::App* const command : app.get_subcommands(all)) {
    for (CLI::Option* const option : command->get_options()) {
      if (option->get_type_size() == 0) continue;
      option->check([](const std::string& value) { return std::string(value.empty() ? "an empty value" : ""); });
    }
  }
}

void AddHelpCommands(CLI::App& app, const char* version) {
  CLI::App& help = *app.add_subcommand("help", "Show what a command does and takes");
  const auto name = std::make_shared<std::string>();
  help.add_option("COMMAND", *name, "The command; all of them when none is named");
  help.callback([&app, name] {
    const auto found = app.get_subcommands([&](const CLI::App* command) { return command->get_name() == *name; });
    if (!name->empty() && found.empty()) throw UsageError(NoSuchCommand(app, *name));
    // app.help() would be that of the command that was given, this one.
    std::cout << (name->empty() ? app.get_formatter()->make_help(&app, "", CLI::AppFormatMode::Normal)
                                : found.front()->help("sokrun"));
  });
  app.add_subcommand("version", "Print the version")->callback([version] { std::cout << version << '\n'; });
}

}  // namespace sok
