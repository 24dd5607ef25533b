#include "cli/client/ClientCommands.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {

void addConfigCommand(CLI::App& app, int& exitCode) {
  ClientCommands(app, exitCode)
      .add<NoOptions>(
          "config", "Show the app's configuration", addNoOptions,
          [](Client& client, const NoOptions&) {
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
