#include "cli/device/TripDevice.h"

#include <memory>

namespace ovinta::cli {

TripDevice::TripDevice(platform::Services base, platform::Date start,
                       ObservedURLSession::Observer observer,
                       const std::optional<platform::DeliveryOptions>& delivery)
    : simulation_(std::move(base), start) {
  simulation_.holdTimeDuringRequests();
  if (delivery) simulation_.deliver(*delivery);
  simulation_.location().setAuthorizationStatus(platform::kAuthorizedWhenInUse);

  platform::Services services = simulation_.services();
  // Put around the session that holds time, so that the observer, too, runs in turn with the main
  // thread.
  session_ = std::make_shared<ObservedURLSession>(services.urlSession, std::move(observer));
  services.urlSession = session_;
  location_ = std::make_shared<ObservedLocationServices>(services.location, services.clock);
  services.location = location_;
  platform::install(services);
}

TripDevice::~TripDevice() {
  session_->disconnect();
  location_->onChanged(nullptr);
}

}  // namespace ovinta::cli
