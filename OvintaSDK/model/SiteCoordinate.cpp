#include "OvintaSDK/model/SiteCoordinate.h"

#include "platform/Services.h"

namespace ovinta {

std::optional<platform::Location> locationFromTexts(const std::optional<std::string>& latitude,
                                                    const std::optional<std::string>& longitude) {
  if (!longitude || !latitude) return std::nullopt;
  const platform::Text& text = *platform::services().text;
  const std::optional<double> east = text.decimal(*longitude);
  const std::optional<double> north = text.decimal(*latitude);
  if (!east || !north) return std::nullopt;
  return platform::Location{.coordinate = {.latitude = *north, .longitude = *east}};
}

std::optional<double> distanceBetween(const platform::Location& from,
                                      const std::optional<platform::Location>& to) {
  if (!to) return std::nullopt;
  return platform::services().geodesy->distance(from.coordinate, to->coordinate);
}

}  // namespace ovinta
