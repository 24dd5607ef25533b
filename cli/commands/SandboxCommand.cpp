#include <pthread.h>
#include <signal.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "cli/client/ExitCode.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
#include "sandbox/Sandbox.h"
#include "sandbox/domain/SnapshotFile.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::cli {
namespace {

struct SandboxArguments {
  sandbox::Options options;
  std::string snapshotFile;
};

ExitCode fail(const std::string& error) {
  complain("ovinta sandbox: " + error);
  return ExitCode::failure;
}

ExitCode runSandbox(const SandboxArguments& arguments) {
  if (!arguments.snapshotFile.empty()) {
    // At the end it would be too late to learn it.
    if (const auto error = sandbox::trySnapshotFile(arguments.snapshotFile)) return fail(*error);
  }
  // Blocked before the service's threads start, so that none but this one takes the signals.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  sandbox::Sandbox service(arguments.options);
  if (const auto error = service.start()) return fail(*error);
  int signal = 0;
  // Nobody finds it whose address could not be written, which the end of the process tells.
  if (std::cout << service.baseURL() << std::endl) sigwait(&signals, &signal);
  service.stop();
  if (arguments.snapshotFile.empty()) return ExitCode::success;
  const auto error = service.saveSnapshot(arguments.snapshotFile);
  return error ? fail(*error) : ExitCode::success;
}

}  // namespace

void addSandboxCommand(CLI::App& app, int& exitCode) {
  auto arguments = std::make_shared<SandboxArguments>();
  sandbox::Options* options = &arguments->options;
  CLI::App* command = app.add_subcommand("sandbox", "Serve the REST service on this machine");
  addNumber(*command, "--port", options->port, "Port on 127.0.0.1; 0 for any that is free")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  addNumber(*command, "--seed", options->seed, "Tokens and redemption codes follow from it")
      ->capture_default_str();
  command
      ->add_option("--seed-file", options->seedFile,
                   "Start with the snapshot that the file holds, and reset to it")
      ->type_name("FILE");
  command
      ->add_option("--snapshot-file", arguments->snapshotFile,
                   "Write a snapshot to the file when the service ends")
      ->type_name("FILE");
  command->add_option("--app-token", options->appToken, "Refuse apps with another token");
  command
      ->add_option("--minimum-app-version", options->minimumAppVersion,
                   "Tell apps that are older to upgrade")
      ->check(CLI::Validator(
          [](const std::string& text) {
            return sandbox::isVersion(text) ? std::string() : text + " is no version";
          },
          "VERSION"));
  command->callback(
      [arguments, &exitCode] { exitCode = static_cast<int>(runSandbox(*arguments)); });
}

}  // namespace ovinta::cli
