#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "../../platform/Export.h"
#include "../../platform/Location.h"
#include "OvintaSDK/model/Geofence.h"

namespace ovinta {

/// A pickup site as the service lists it. What the service left out is absent; texts are as it sent
/// them. A plain value.
struct OVINTA_EXPORT Site {
  /// The service's number for the site.
  std::int64_t id = 0;
  /// The retailer's own identifier of the site.
  std::optional<std::string> partnerIdentifier = {};
  /// Name, phone number and address, in words for people.
  std::optional<std::string> name = {};
  std::optional<std::string> phone = {};
  std::optional<std::string> streetAddress = {};
  std::optional<std::string> fullAddress = {};
  std::optional<std::string> locality = {};
  std::optional<std::string> region = {};
  std::optional<std::string> country = {};
  std::optional<std::string> postalCode = {};
  /// Degrees as decimal text, as `latitude`; see `location`.
  std::optional<std::string> longitude = {};
  std::optional<std::string> latitude = {};
  /// What the customer is to do there, what the site is, and where its picture is.
  std::optional<std::string> instructions = {};
  std::optional<std::string> descriptionText = {};
  std::optional<std::string> coverPhotoURL = {};
  /// Colours and logo with which the application may show the site's project.
  std::optional<std::string> projectAccentColor = {};
  std::optional<std::string> projectAccentTextColor = {};
  std::optional<std::string> projectLogoURL = {};
  /// The circle that `NotifyManager` watches; a site without one is never notified of.
  std::optional<Geofence> geofence = {};

  /// Where the site is; absent when a coordinate is, or is not a decimal number. The range of the
  /// numbers is not checked. May be called from any thread, as `distance`.
  std::optional<platform::Location> location() const;

  /// The distance to `location()` in metres, along the WGS84 geodesic; absent when that is, not a
  /// number when a latitude is out of range.
  std::optional<double> distance(const platform::Location& from) const;
};

/// How sites are handed out; nobody changes them, so that any thread may read one.
using SitePtr = std::shared_ptr<const Site>;
/// Several sites; those of the library hold no null.
using SiteList = std::vector<SitePtr>;

}  // namespace ovinta
