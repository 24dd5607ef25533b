#include "OvintaSDK/model/Order.h"

#include "OvintaSDK/model/SiteCoordinate.h"

namespace ovinta {

std::optional<platform::Location> Order::siteLocation() const {
  return locationFromTexts(siteLatitude, siteLongitude);
}

std::optional<double> Order::siteDistance(const platform::Location& from) const {
  return distanceBetween(from, siteLocation());
}

}  // namespace ovinta
