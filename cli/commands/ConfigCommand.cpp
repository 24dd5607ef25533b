#include "cli/client/ClientCommands.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {

void addConfigCommand(CLI::App& app, int& exitCode) {
  ClientCommands(app, exitCode)
      .add<NoInput>(
          "config", "Show the app's configuration", noOptions, [](Client& client, const NoInput&) {
            return client.perform(
                [](const Client::Report& report) {
                  Ovinta::config().fetch(
                      [report](const auto& configuration, const ErrorPtr& error) {
                        report(configuration ? std::optional(Result(*configuration)) : std::nullopt,
                               error);
                      });
                },
                "the service's address is not known.");
          });
}

}  // namespace ovinta::cli
