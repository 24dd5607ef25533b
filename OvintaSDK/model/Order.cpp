#include "OvintaSDK/model/Order.h"

#include "OvintaSDK/model/SiteCoordinate.h"
#include "platform/Services.h"

namespace ovinta {

std::optional<platform::Location> Order::siteLocation() const {
  return locationFromTexts(siteLatitude, siteLongitude);
}

std::optional<double> Order::siteDistance(const platform::Location& from) const {
  const std::optional<platform::Location> site = siteLocation();
  if (!site) return std::nullopt;
  return platform::services().geodesy->distance(from.coordinate, site->coordinate);
}

}  // namespace ovinta
