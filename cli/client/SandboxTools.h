#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "cli/client/ClientOptions.h"
#include "cli/client/Output.h"
#include "cli/client/SandboxClient.h"

namespace ovinta::cli {

/// What a command has at hand that speaks to a sandbox for its merchant or tester.
struct SandboxTool {
  SandboxClient& client;
  const Output& output;
  bool json;
  /// For further clients of the same sandbox.
  const std::string& baseURL;
  const std::string& token;
};

/// Adds the options of such a command; `options` must outlive the parsing.
void addToolOptions(CLI::App& command, ClientOptions& options);

/// Runs `run` with the sandbox that the options name, or that was used last; answers the exit code.
ExitCode runTool(const ClientOptions& options,
                 const std::function<ExitCode(const SandboxTool&)>& run);

/// Asks the sandbox, and says on the terminal when that takes long. Throws as `SandboxClient` does.
platform::Value ask(const SandboxTool& tool, const std::string& method, const std::string& path,
                    const std::optional<platform::Value>& record = {});

/// Adds a command that speaks to a sandbox; its own options are the fields of an `Options`.
/// `exitCode` must outlive the parsing.
template <class Options>
void addTool(CLI::App& group, int& exitCode, const std::string& name,
             const std::string& description,
             const std::function<void(CLI::App&, Options&)>& addOptions,
             std::function<ExitCode(const SandboxTool&, const Options&)> run) {
  auto own = std::make_shared<Options>();
  auto common = std::make_shared<ClientOptions>();
  CLI::App* command = group.add_subcommand(name, description);
  addOptions(*command, *own);
  addToolOptions(*command, *common);
  command->callback([own, common, run = std::move(run), &exitCode] {
    exitCode = static_cast<int>(
        runTool(*common, [&](const SandboxTool& tool) { return run(tool, *own); }));
  });
}

}  // namespace ovinta::cli
