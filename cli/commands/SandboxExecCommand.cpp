#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/client/ClientOptions.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
#include "cli/commands/SandboxOptions.h"
#include "cli/device/Interruption.h"
#include "replay/ChildProcess.h"
#include "replay/TemporaryDirectory.h"
#include "sandbox/Sandbox.h"

namespace ovinta::cli {
namespace {

/// How soon the end of the command, or an interruption, is noticed.
constexpr std::chrono::milliseconds kChildInterval{20};

std::string variable(const char* name, const std::string& value) {
  return std::string(name) + "=" + value;
}

/// What the command is told of the sandbox; its data directory is one of its own, since customers
/// and orders of other sandboxes are unknown to this one.
std::vector<std::string> variables(const sandbox::Sandbox& service, const SandboxOptions& options,
                                   const replay::TemporaryDirectory& directory) {
  std::vector<std::string> list{variable(kBaseURLVariable, service.baseURL()),
                                variable(kDataDirectoryVariable, directory.path() / "data")};
  const auto& token = options.service.appToken;
  if (token) list.push_back(variable(kTokenVariable, *token));
  return list;
}

/// Returns the exit status of the command, which has ended then.
int runCommand(const std::vector<std::string>& command, std::vector<std::string> variables,
               Interruption& interruption) {
  replay::ChildProcess child(command, std::move(variables), replay::ChildOutput::shared);
  while (!child.exitStatus()) interruption.check(kChildInterval);
  return child.wait();
}

int runWithSandbox(const SandboxOptions& options, const std::vector<std::string>& command) {
  Interruption interruption;
  sandbox::Sandbox service(serviceOptions(options));
  startService(service);
  const replay::TemporaryDirectory directory;
  std::optional<Interrupted> interrupted;
  int exitStatus = 0;
  try {
    exitStatus = runCommand(command, variables(service, options, directory), interruption);
  } catch (const Interrupted& caught) {
    interrupted = caught;
  }
  service.stop();
  saveSnapshot(service, options);
  if (interrupted) throw Interrupted(*interrupted);
  return exitStatus;
}

}  // namespace

void addSandboxExecCommand(CLI::App& group, SandboxOptions& options, int& exitCode) {
  auto words = std::make_shared<std::vector<std::string>>();
  CLI::App* command = group.add_subcommand(
      "exec",
      "Run a command with a sandbox of its own on a free port, whose address it finds in "
      "OVINTA_BASE_URL, and the app's token in OVINTA_TOKEN");
  command->add_option("command", *words, "The command and its arguments, after --")->required();
  addJSONOption(*command, options.json);
  command->callback([words, &options, &exitCode] {
    const ExitCode failure = Output(options.json).guard([&] {
      exitCode = runWithSandbox(options, *words);
      return ExitCode::success;
    });
    if (failure != ExitCode::success) exitCode = static_cast<int>(failure);
  });
}

}  // namespace ovinta::cli
