#include <arpa/inet.h>
#include <pthread.h>
#include <signal.h>

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "cli/client/ClientOptions.h"
#include "cli/client/Color.h"
#include "cli/client/ExitCode.h"
#include "cli/client/HumanText.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/Output.h"
#include "cli/commands/Commands.h"
#include "cli/commands/SandboxOptions.h"
#include "sandbox/domain/SnapshotFile.h"
#include "sandbox/domain/WireForms.h"

namespace ovinta::cli {
namespace {

/// A line on standard error, all at once, so that those of several threads do not mix.
void tellRequest(const sandbox::AnsweredRequest& request) {
  std::array<char, 32> time{};
  std::snprintf(time.data(), time.size(), "%.1f ms", request.duration.count());
  const std::string status = request.status == 0 ? "---" : std::to_string(request.status);
  std::cerr << colored(status, colorOf(request.status), STDERR_FILENO) + "  " + request.method +
                   " " + visibleText(request.target) + "  " + time.data() + "\n";
}

/// The same for programs.
void tellRequestAsJSON(const sandbox::AnsweredRequest& request) {
  std::cerr << visibleJSON(platform::Dictionary{{"method", request.method},
                                                {"path", request.target},
                                                {"status", request.status},
                                                {"duration_ms", request.duration.count()}}) +
                   "\n";
}

/// Throws `std::runtime_error` for what goes wrong.
void serve(const SandboxOptions& options) {
  // Blocked before the service's threads start, so that none but this one takes the signals.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  sandbox::Sandbox service(serviceOptions(options));
  startService(service);
  const std::string address = options.json
                                  ? visibleJSON(platform::Dictionary{{"url", service.baseURL()}})
                                  : service.baseURL();
  int signal = 0;
  // Nobody finds it whose address could not be written, which the end of the process tells.
  if (std::cout << address << std::endl) sigwait(&signals, &signal);
  service.stop();
  saveSnapshot(service, options);
}

ExitCode runSandbox(const SandboxOptions& options) {
  try {
    serve(options);
    return ExitCode::success;
  } catch (const std::runtime_error& error) {
    if (options.json) {
      Output(true).printFailure("Command Failed", error.what());
    } else {
      complain(std::string("ovinta sandbox: ") + error.what());
    }
    return ExitCode::failure;
  }
}

/// What is wrong with a text that is no address to serve on; empty for all others.
std::string isAddressToServeOn(const std::string& text) {
  in_addr address{};
  if (text == "localhost" || ::inet_pton(AF_INET, text.c_str(), &address) == 1) return "";
  return "\"" + text + "\" is no IPv4 address, nor \"localhost\"";
}

/// Refuses what is asked of a service of one's own where the command named is for another one.
void refuseOptionsOfService(const CLI::App& command) {
  if (command.get_subcommands().empty()) return;
  const std::string& name = command.get_subcommands().front()->get_name();
  for (const CLI::Option* option : command.get_options()) {
    const bool isForBoth = name == "exec" && option->get_name() != "--port";
    if (option->count() == 0 || isForBoth) continue;
    throw CLI::ValidationError(option->get_name(), "is not for \"sandbox " + name + "\"");
  }
}

}  // namespace

sandbox::Options serviceOptions(const SandboxOptions& options) {
  if (!options.snapshotFile.empty()) {
    if (const auto error = sandbox::trySnapshotFile(options.snapshotFile)) {
      throw std::runtime_error(*error);
    }
  }
  sandbox::Options service = options.service;
  if (options.verbose) service.onRequest = options.json ? tellRequestAsJSON : tellRequest;
  return service;
}

void startService(sandbox::Sandbox& service) {
  if (const auto error = service.start()) throw std::runtime_error(*error);
}

void saveSnapshot(sandbox::Sandbox& service, const SandboxOptions& options) {
  if (options.snapshotFile.empty()) return;
  if (const auto error = service.saveSnapshot(options.snapshotFile)) {
    throw std::runtime_error(*error);
  }
}

void addSandboxCommand(CLI::App& app, int& exitCode) {
  auto options = std::make_shared<SandboxOptions>();
  sandbox::Options* service = &options->service;
  CLI::App* command = app.add_subcommand("sandbox", "Serve the REST service on this machine");
  command->add_flag("--verbose", options->verbose,
                    "Tell of each request in a line on standard error");
  command
      ->add_flag("--json", options->json,
                 "Print address, requests and failures as JSON, one object per line")
      ->group(kCommonOptions);
  command
      ->add_option("--host", service->host,
                   "Address to serve on; one that is not of this machine alone takes --app-token, "
                   "which everybody has to know then")
      ->type_name("ADDRESS")
      ->check(isAddressToServeOn)
      ->capture_default_str();
  addNumber(*command, "--port", service->port, "TCP port; 0 for any that is free")
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
  addSandboxExecCommand(*command, *options, exitCode);
  command->parse_complete_callback([command] { refuseOptionsOfService(*command); });
  command->callback([options, command, &exitCode] {
    if (!command->get_subcommands().empty()) return;
    exitCode = static_cast<int>(runSandbox(*options));
  });
}

}  // namespace ovinta::cli
