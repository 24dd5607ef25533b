#include "cli/track/SiteTrip.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "cli/device/BuiltInTrip.h"

namespace ovinta::cli {
namespace {

using platform::Coordinate;
using platform::simulation::Trip;
using platform::simulation::TripBeacon;
using platform::simulation::TripPoint;

/// The highest latitude of a site to which the built-in trip is moved: beyond it a degree of
/// longitude is too short for the ways to stay similar.
constexpr double kHighestLatitude = 85;

double cosine(double degrees) { return std::cos(degrees * std::numbers::pi / 180); }

/// The place that lies to the site as `place` does to the end of the drive.
Coordinate moved(Coordinate place, Coordinate site) {
  const double shrinkage = cosine(kBuiltInTripEnd.latitude) / cosine(site.latitude);
  const double longitude =
      site.longitude + (place.longitude - kBuiltInTripEnd.longitude) * shrinkage;
  return {site.latitude + (place.latitude - kBuiltInTripEnd.latitude),
          std::remainder(longitude, 360)};
}

void rename(TripBeacon& beacon, const BeaconRegion& region) {
  beacon.proximityUUID = region.uuid;
  beacon.major = region.major.value_or(beacon.major);
  beacon.minor = region.minor.value_or(beacon.minor);
}

}  // namespace

std::optional<Trip> tripToSite(const Order& order) {
  const auto site = order.siteLocation();
  const bool isOnEarth = site && std::abs(site->coordinate.latitude) <= kHighestLatitude &&
                         std::abs(site->coordinate.longitude) <= 180;
  if (!isOnEarth) return std::nullopt;
  Trip trip = std::get<Trip>(Trip::fromGPXText(builtInTrip()));
  for (TripPoint& point : trip.points) point.coordinate = moved(point.coordinate, site->coordinate);
  const auto regions = order.siteBeaconRegions.value_or(std::vector<BeaconRegion>());
  if (regions.empty()) trip.beacons.clear();
  for (TripBeacon& beacon : trip.beacons) {
    beacon.coordinate = moved(beacon.coordinate, site->coordinate);
    rename(beacon, regions.front());
  }
  return trip;
}

}  // namespace ovinta::cli
