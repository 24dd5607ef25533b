#include "cli/demo/DemoDevice.h"

#include <cmath>
#include <memory>

#include "platform/linux/Linux.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/SimulatedBundle.h"

namespace ovinta::cli {
namespace {

using namespace platform::simulation;

constexpr platform::AuthorizationStatus kWhenInUse = 4;

platform::Services realServices(const std::filesystem::path& directory) {
  return platform::linux::makeServices({.applicationID = "ovinta-demo",
                                        .mainBundleDirectory = directory,
                                        .dataDirectory = directory});
}

/// The log, shown or kept quiet.
std::shared_ptr<platform::Log> makeLog(const platform::Services& services, bool verbose) {
  if (verbose) return services.log;
  return std::make_shared<RecordingLog>();
}

}  // namespace

DemoDevice::DemoDevice(const DemoOptions& options, platform::Date start,
                       ObservedURLSession::Observer observer)
    : simulation_(realServices(directory_.path()), start) {
  simulation_.holdTimeDuringRequests();
  simulation_.location().setAuthorizationStatus(kWhenInUse);

  platform::Services services = simulation_.services();
  services.log = makeLog(services, options.verbose);
  services.mainBundle = std::make_shared<SimulatedBundle>(
      SimulatedBundle::Texts{{"CFBundleShortVersionString", "1.0"}});
  // Outside of what holds time, so that the observer, too, runs in turn with the main thread.
  services.urlSession =
      std::make_shared<ObservedURLSession>(services.urlSession, std::move(observer));
  platform::install(services);
}

std::string DemoDevice::accuracyText() {
  const SimulatedLocation& location = simulation_.location();
  if (!location.isUpdating()) return "";
  const bool isBest = location.desiredAccuracy() == platform::LocationAccuracy::best;
  return std::string(isBest ? "best" : "best for navigation") + ", " +
         std::to_string(std::lround(location.distanceFilter())) + " m";
}

}  // namespace ovinta::cli
