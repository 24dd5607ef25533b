#include <CLI/CLI.hpp>
#include <memory>

#include "cli/client/ClientServices.h"
#include "cli/commands/Commands.h"
#include "cli/track/OrderWatch.h"

namespace ovinta::cli {

void addWatchCommand(CLI::App& group, int& exitCode) {
  auto options = std::make_shared<ClientOptions>();
  CLI::App* command = group.add_subcommand(
      "watch", "Show what becomes of the open orders, by the pushes of a sandbox");
  addClientOptions(*command, *options);
  command->callback([options, &exitCode] {
    exitCode = static_cast<int>(Output(options->json).guard([&] {
      Interruption interruption;
      const ExitCode code = OrderWatch(*options, interruption).run();
      refuseUnkept();
      return code;
    }));
  });
}

}  // namespace ovinta::cli
