#include <pthread.h>
#include <signal.h>

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "cli/client/Color.h"
#include "cli/client/ExitCode.h"
#include "cli/client/HumanText.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
#include "sandbox/Sandbox.h"
#include "sandbox/domain/SnapshotFile.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::cli {
namespace {

struct SandboxOptions {
  sandbox::Options service;
  std::string snapshotFile;
};

/// A line on standard error, all at once, so that those of several threads do not mix.
void tellRequest(const sandbox::AnsweredRequest& request) {
  std::array<char, 32> time{};
  std::snprintf(time.data(), time.size(), "%.1f ms", request.duration.count());
  const std::string status = request.status == 0 ? "---" : std::to_string(request.status);
  std::cerr << colored(status, colorOf(request.status), STDERR_FILENO) + "  " + request.method +
                   " " + visibleText(request.target) + "  " + time.data() + "\n";
}

ExitCode fail(const std::string& error) {
  complain("ovinta sandbox: " + error);
  return ExitCode::failure;
}

ExitCode runSandbox(const SandboxOptions& options) {
  if (!options.snapshotFile.empty()) {
    // At the end it would be too late to learn it.
    if (const auto error = sandbox::trySnapshotFile(options.snapshotFile)) return fail(*error);
  }
  // Blocked before the service's threads start, so that none but this one takes the signals.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  sandbox::Sandbox service(options.service);
  if (const auto error = service.start()) return fail(*error);
  int signal = 0;
  // Nobody finds it whose address could not be written, which the end of the process tells.
  if (std::cout << service.baseURL() << std::endl) sigwait(&signals, &signal);
  service.stop();
  if (options.snapshotFile.empty()) return ExitCode::success;
  const auto error = service.saveSnapshot(options.snapshotFile);
  return error ? fail(*error) : ExitCode::success;
}

}  // namespace

void addSandboxCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<SandboxOptions>();
  sandbox::Options* service = &options->service;
  CLI::App* command = app.add_subcommand("sandbox", "Serve the REST service on this machine");
  command->add_flag_callback(
      "--verbose", [service] { service->onRequest = tellRequest; },
      "Tell of each request in a line on standard error");
  command
      ->add_option("--host", service->host,
                   "Address to serve on; one that is not of this machine alone takes --app-token, "
                   "which everybody has to know then")
      ->type_name("ADDRESS")
      ->capture_default_str();
  addNumber(*command, "--port", service->port, "Port on 127.0.0.1; 0 for any that is free")
      ->check(CLI::Range(0, 65535))
      ->capture_default_str();
  addNumber(*command, "--seed", service->seed, "Tokens and redemption codes follow from it")
      ->capture_default_str();
  command
      ->add_option("--seed-file", service->seedFile,
                   "Start with the snapshot that the file holds, and reset to it")
      ->type_name("FILE");
  command
      ->add_option("--snapshot-file", options->snapshotFile,
                   "Write a snapshot to the file when the service ends")
      ->type_name("FILE");
  command->add_option("--app-token", service->appToken, "Refuse apps with another token");
  command
      ->add_option("--minimum-app-version", service->minimumAppVersion,
                   "Tell apps that are older to upgrade")
      ->check(CLI::Validator(
          [](const std::string& text) {
            return sandbox::isVersion(text) ? std::string() : text + " is no version";
          },
          "VERSION"));
  addSandboxToolCommands(*command, exitCode);
  addSandboxExecCommand(*command, *service, exitCode);
  command->callback([options, command, &exitCode] {
    if (!command->get_subcommands().empty()) return;
    exitCode = static_cast<int>(runSandbox(*options));
  });
}

}  // namespace ovinta::cli
