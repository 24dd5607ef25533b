#include "cli/device/TripDevice.h"

#include <cmath>
#include <memory>

namespace ovinta::cli {
namespace {

constexpr platform::AuthorizationStatus kWhenInUse = 4;

}  // namespace

TripDevice::TripDevice(platform::Services base, platform::Date start,
                       ObservedURLSession::Observer observer)
    : simulation_(std::move(base), start) {
  simulation_.holdTimeDuringRequests();
  simulation_.location().setAuthorizationStatus(kWhenInUse);

  platform::Services services = simulation_.services();
  // Outside of what holds time, so that the observer, too, runs in turn with the main thread.
  session_ = std::make_shared<ObservedURLSession>(services.urlSession, std::move(observer));
  services.urlSession = session_;
  platform::install(services);
}

std::string TripDevice::accuracyText() {
  const platform::simulation::SimulatedLocation& location = simulation_.location();
  if (!location.isUpdating()) return "";
  const bool isBest = location.desiredAccuracy() == platform::LocationAccuracy::best;
  return std::string(isBest ? "best" : "best for navigation") + ", " +
         std::to_string(std::lround(location.distanceFilter())) + " m";
}

}  // namespace ovinta::cli
