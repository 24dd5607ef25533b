#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/commands/Commands.h"
#include "cli/manual/Completion.h"
#include "cli/manual/ManPage.h"

namespace ovinta::cli {

// These commands serve the build; without a group the help does not show them.
void addManualCommands(CLI::App& app) {
  CLI::App* completion = app.add_subcommand("completion", "Print the completion of a shell");
  completion->group("")->require_subcommand(1);
  completion->add_subcommand("bash", "Print the completion of bash")->callback([&app] {
    std::cout << bashCompletion(app);
  });
  app.add_subcommand("man", "Print the manual page")->group("")->callback([&app] {
    std::cout << manPage(app);
  });
}

}  // namespace ovinta::cli
