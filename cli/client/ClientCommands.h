#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

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

  /// Adds a command whose options are the fields of an `Input`: `addOptions` declares them, `run`
  /// does the work. Both are called with the same input.
  template <class Input>
  void add(const std::string& name, const std::string& description,
           const std::function<void(CLI::App&, Input&)>& addOptions,
           const std::function<ExitCode(Client&, const Input&)>& run) {
    auto input = std::make_shared<Input>();
    auto options = std::make_shared<ClientOptions>();
    CLI::App* command = app_.add_subcommand(name, description);
    addOptions(*command, *input);
    addClientOptions(*command, *options);
    command->callback([input, options, run, &exitCode = exitCode_] {
      bool simulatesLocation = false;
      if constexpr (requires { input->simulatesLocation; }) {
        simulatesLocation = input->simulatesLocation;
      }
      exitCode = static_cast<int>(Output(options->json).guard([&] {
        Client client(*options, simulatesLocation);
        const ExitCode code = run(client, *input);
        refuseUnkept();
        return code;
      }));
    });
  }

 private:
  CLI::App& app_;
  int& exitCode_;
};

/// The input of a command without options of its own.
struct NoInput {};
inline void noOptions(CLI::App& /*command*/, NoInput& /*input*/) {}

}  // namespace ovinta::cli
