#include <pthread.h>
#include <signal.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include "cli/Commands.h"
#include "sandbox/Sandbox.h"
#include "sandbox/SnapshotFile.h"
#include "sandbox/WireForms.h"

namespace ovinta::cli {
namespace {

struct SandboxArguments {
  sandbox::Options options;
  std::string snapshotFile;
};

int fail(const std::string& error) {
  std::cerr << "ovinta sandbox: " << error << "\n";
  return 1;
}

int runSandbox(const SandboxArguments& arguments) {
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
  std::cout << service.baseURL() << std::endl;
  int signal = 0;
  sigwait(&signals, &signal);
  service.stop();
  if (arguments.snapshotFile.empty()) return 0;
  const auto error = service.saveSnapshot(arguments.snapshotFile);
  return error ? fail(*error) : 0;
}

}  // namespace

void addSandboxCommand(CLI::App& app, int& exitCode) {
  auto arguments = std::make_shared<SandboxArguments>();
  sandbox::Options* options = &arguments->options;
  CLI::App* command = app.add_subcommand("sandbox", "Serve the REST service on this machine");
  command->add_option("--port", options->port, "Port on 127.0.0.1; 0 for any that is free")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  command->add_option("--seed", options->seed, "Tokens and redemption codes follow from it")
      ->capture_default_str();
  command->add_option("--seed-file", options->seedFile,
                      "Start with the snapshot that the file holds, and reset to it");
  command->add_option("--snapshot-file", arguments->snapshotFile,
                      "Write a snapshot to the file when the service ends");
  command->add_option("--app-token", options->appToken, "Refuse apps with another token");
  command
      ->add_option("--minimum-app-version", options->minimumAppVersion,
                   "Tell apps that are older to upgrade")
      ->check(CLI::Validator(
          [](const std::string& text) {
            return sandbox::isVersion(text) ? std::string() : text + " is no version";
          },
          "VERSION"));
  command->callback([arguments, &exitCode] { exitCode = runSandbox(*arguments); });
}

}  // namespace ovinta::cli
