#include "host/runner/commands/help.h"

#include <memory>
#include <sstream>
#include <string>
#include <vector>

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

std::string Message(const CLI::App* app, const CLI::Error& error) {
  const std::vector<CLI::App*> commands = app->get_subcommands();
  const std::vector<std::string> unknown = app->remaining();
  std::string message = error.what();
  if (commands.empty() && unknown.empty()) message = "say which command";
  if (commands.empty() && !unknown.empty()) {
    message = (unknown.front().starts_with('-') ? "there is no option " : "there is no command ") + unknown.front();
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

}  // namespace sok
