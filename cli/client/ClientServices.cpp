#include "cli/client/ClientServices.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "OvintaSDK/OvintaSDK.h"
#include "cli/client/HumanText.h"
#include "cli/client/StoredOrders.h"
#include "cli/client/UnreadableAnswers.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"

namespace ovinta::cli {
namespace {

using platform::simulation::SimulatedBundle;

/// The library keeps going with what it cannot keep; a command's result would be lost.
void refuseUnwritable(const std::filesystem::path& directory) {
  std::error_code error;
  const bool isNew = std::filesystem::create_directories(directory, error);
  if (isNew) std::filesystem::permissions(directory, std::filesystem::perms::owner_all, error);
  if (!error && ::access(directory.c_str(), R_OK | W_OK | X_OK) == 0) return;
  throw std::runtime_error("the data directory " + directory.string() + " cannot be written to");
}

/// Writes to standard error, for people.
class VisibleLog : public platform::Log {
 public:
  /// All at once, so that lines of several threads do not mix.
  void write(std::string_view line) override { std::cerr << visibleText(line) + "\n"; }
};

platform::Services systemServices(const ClientOptions& options, platform::linuxos::Options system) {
  system.applicationID = kApplicationID;
  system.dataDirectory = options.dataDirectory;
  system.log = logFor(options);
  // What the command arms is for its own trips.
  system.usesNotifyAgent = false;
  return platform::linuxos::makeServices(system);
}

}  // namespace

std::shared_ptr<platform::Log> logFor(const ClientOptions& options) {
  if (options.verbose) return std::make_shared<VisibleLog>();
  return std::make_shared<platform::simulation::RecordingLog>();
}

platform::Services valueServices() {
  return platform::linuxos::makeServices({.applicationID = kApplicationID,
                                          .log = std::make_shared<VisibleLog>(),
                                          .usesNotifyAgent = false});
}

platform::Services clientServices(const ClientOptions& options, platform::linuxos::Options system) {
  platform::Services services = systemServices(options, std::move(system));
  refuseUnwritable(orderStoreFile(services).parent_path());
  services.urlSession = notingUnreadable(services.urlSession);
  services.mainBundle = std::make_shared<SimulatedBundle>(
      SimulatedBundle::Texts{{"CFBundleShortVersionString", options.appVersion}});
  return services;
}

void refuseUnkept() {
  const auto failure = platform::services().settings->failure();
  if (failure)
    throw std::runtime_error("the data directory does not keep the settings. " + *failure);
}

void configureLibrary(const ClientOptions& options) {
  if (options.baseURL) UserDefaultsKey::apiBase.set(*options.baseURL);
  // Before anything is asked of the service in vain, or in the name of nobody.
  refuseUnkept();
  Ovinta::configure({{"token", options.token}});
}

}  // namespace ovinta::cli
