#include "cli/device/TripDevice.h"

#include <memory>

#include "OvintaSDK/model/LocationAuthStatus.h"

namespace ovinta::cli {
namespace {

constexpr auto kWhenInUse =
    static_cast<platform::AuthorizationStatus>(LocationAuthStatus::authorizedWhenInUse);

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
  location_ = std::make_shared<ObservedLocationServices>(services.location, services.clock);
  services.location = location_;
  platform::install(services);
}

TripDevice::~TripDevice() {
  session_->disconnect();
  location_->onChanged(nullptr);
}

}  // namespace ovinta::cli
