#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "cli/client/ClientOptions.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
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

/// Returns the exit status of the command, which has a data directory of its own: customers and
/// orders of other sandboxes are unknown to this one.
int runWithSandbox(sandbox::Options options, const std::vector<std::string>& command) {
  Interruption interruption;
  options.port = 0;
  sandbox::Sandbox service(std::move(options));
  if (const auto error = service.start()) throw std::runtime_error(*error);
  const replay::TemporaryDirectory directory;
  replay::ChildProcess child(command,
                             {variable(kBaseURLVariable, service.baseURL()),
                              variable(kDataDirectoryVariable, directory.path() / "data")},
                             replay::ChildOutput::shared);
  while (!child.exitStatus()) interruption.check(kChildInterval);
  return child.wait();
}

}  // namespace

void addSandboxExecCommand(CLI::App& group, const sandbox::Options& options, int& exitCode) {
  auto words = std::make_shared<std::vector<std::string>>();
  CLI::App* command = group.add_subcommand(
      "exec",
      "Run a command with a sandbox of its own on a free port, whose address it finds in "
      "OVINTA_BASE_URL");
  command->add_option("command", *words, "The command and its arguments, after --")->required();
  command->callback([words, &options, &exitCode] {
    const ExitCode failure = Output(false).guard([&] {
      exitCode = runWithSandbox(options, *words);
      return ExitCode::success;
    });
    if (failure != ExitCode::success) exitCode = static_cast<int>(failure);
  });
}

}  // namespace ovinta::cli
