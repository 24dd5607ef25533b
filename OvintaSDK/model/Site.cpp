#include "OvintaSDK/model/Site.h"

#include "OvintaSDK/model/SiteCoordinate.h"

namespace ovinta {

std::optional<platform::Location> Site::location() const {
  return locationFromTexts(latitude, longitude);
}

std::optional<double> Site::distance(const platform::Location& from) const {
  return distanceBetween(from, location());
}

}  // namespace ovinta
