#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "cli/client/Client.h"
#include "cli/client/ClientServices.h"

namespace ovinta::cli {

/// Why an operation that asks the service may never report.
inline constexpr std::string_view kNoData = "the network handed over an answer without any data.";

/// A group of commands that work as a client of the service, such as `ovinta orders`.
class ClientCommands {
 public:
  /// `exitCode` must outlive the parsing.
  ClientCommands(CLI::App& app, int& exitCode) : app_(app), exitCode_(exitCode) {}

  /// Adds a command whose own options are the fields of an `Options`: `addOptions` declares them,
  /// `run` does the work with what was given. Where `simulatesLocation` names a field and that is
  /// set, the library has a simulated location.
  template <class Options>
  void add(const std::string& name, const std::string& description,
           const std::function<void(CLI::App&, Options&)>& addOptions,
           std::function<ExitCode(Client&, const Options&)> run,
           bool Options::*simulatesLocation = nullptr) {
    auto own = std::make_shared<Options>();
    auto common = std::make_shared<ClientOptions>();
    CLI::App* command = app_.add_subcommand(name, description);
    addOptions(*command, *own);
    addClientOptions(*command, *common);
    command->callback(
        [own, common, run = std::move(run), simulatesLocation, &exitCode = exitCode_] {
          exitCode = static_cast<int>(Output(common->json).guard([&] {
            Client client(*common, simulatesLocation && (*own).*simulatesLocation);
            const ExitCode code = run(client, *own);
            refuseUnkept();
            return code;
          }));
        });
  }

 private:
  CLI::App& app_;
  int& exitCode_;
};

/// The options of a command that has none of its own.
struct NoOptions {};
inline void addNoOptions(CLI::App& /*command*/, NoOptions& /*options*/) {}

}  // namespace ovinta::cli
