#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/commands/Commands.h"
#include "cli/manual/Arguments.h"
#include "cli/manual/Completion.h"
#include "cli/manual/ManPage.h"

namespace ovinta::cli {
namespace {

/// A command whose name `inOrder` puts in other words: its own options are what is left.
void addHelpCommand(CLI::App& app) {
  auto names = std::make_shared<std::vector<std::string>>();
  CLI::App* command = app.add_subcommand(kHelpCommand, "Show the help of a command");
  command->add_option("command", *names, "The names that lead to it");
  command->callback([names, &app] { std::cout << app.help(); });
}

}  // namespace

void addManualCommands(CLI::App& app) {
  addHelpCommand(app);
  CLI::App* completion = app.add_subcommand("completion", "Print the completion of a shell");
  completion->require_subcommand(1);
  for (const ShellCompletion& shell : kShellCompletions) {
    const std::string name(shell.shell);
    completion->add_subcommand(name, "Print the completion of " + name)->callback([&app, &shell] {
      std::cout << shell.script(app);
    });
  }
  app.add_subcommand("man", "Print the manual page")->callback([&app] {
    std::cout << manPage(app);
  });
}

}  // namespace ovinta::cli
