#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "OvintaSDK/location/Beacon.h"
#include "OvintaSDK/location/BeaconList.h"
#include "platform/LocationManager.h"

namespace ovinta::cli {

/// What the library asks of the device's location services, and what it hears from them.
struct ObservedLocation {
  bool isUpdating = false;
  bool isMonitoringSignificantChanges = false;
  /// The accuracy that was asked for last; absent before.
  std::optional<platform::LocationAccuracy> desiredAccuracy = {};
  /// The distance filter in force, in metres.
  double distanceFilter = 0;
  /// How often the filter became another one than before.
  std::size_t distanceFilterChanges = 0;
  std::vector<platform::Region> rangedRegions = {};

  /// The last position that the library was told; absent before the first.
  std::optional<platform::Location> location = {};
  /// The beacons heard of late, smoothed as the library smooths those that it sends.
  std::vector<Beacon> beacons = {};
};

/// The accuracy and distance filter in force, for people; empty while positions are not asked for.
std::string accuracyText(const ObservedLocation& location);

/// The place for people, e.g. "40.74110, -73.98970 within 5 m".
std::string placeText(const platform::Location& location);

/// Passes everything on, and records it. Main thread only, save the two queries that
/// `LocationServices` opens to any thread. The managers may outlive it.
class ObservedLocationServices : public platform::LocationServices {
 public:
  ObservedLocationServices(std::shared_ptr<platform::LocationServices> inner,
                           std::shared_ptr<platform::Clock> clock)
      : inner_(std::move(inner)),
        record_(std::make_shared<Record>(Record{.beacons = BeaconList(std::move(clock))})) {}

  bool locationServicesEnabled() const override { return inner_->locationServicesEnabled(); }
  platform::AuthorizationStatus authorizationStatus() const override {
    return inner_->authorizationStatus();
  }
  std::unique_ptr<platform::LocationManager> makeLocationManager() override;

  /// What was seen of all managers together, of which the library has one. The reference follows
  /// what happens, save the beacons, which are those heard by the time of the call.
  const ObservedLocation& observed() const;

  /// Has `observer` called at each request, once it was made, and at each piece of news, before the
  /// library hears of it; null ends that.
  void onChanged(std::function<void()> observer) { record_->observer = std::move(observer); }

 private:
  struct Record {
    ObservedLocation observed = {};
    BeaconList beacons;
    std::function<void()> observer = {};

    void tell() const {
      if (observer) observer();
    }
  };
  class Manager;

  const std::shared_ptr<platform::LocationServices> inner_;
  const std::shared_ptr<Record> record_;
};

}  // namespace ovinta::cli
