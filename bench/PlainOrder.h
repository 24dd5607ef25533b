#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OvintaSDK/location/BeaconRegion.h"
#include "OvintaSDK/model/OrderProgress.h"

namespace ovinta::bench {

/// What an `Order` holds, in a struct as one writes it who needs nothing else.
struct PlainOrder : OrderProgress {
  using Text = std::optional<std::string>;

  std::int64_t id = 0;
  std::int64_t siteID = 0;
  Text partnerIdentifier;
  Text redemptionCode;
  std::optional<platform::Date> redeemedAt;
  Text displayName;
  std::optional<std::pair<platform::Date, platform::Date>> pickupWindow;
  Text siteName;
  Text sitePhone;
  Text siteStreetAddress;
  Text siteFullAddress;
  Text siteLocality;
  Text siteRegion;
  Text siteCountry;
  Text sitePostalCode;
  Text siteLongitude;
  Text siteLatitude;
  Text siteInstructions;
  Text siteDescription;
  Text siteCoverPhotoURL;
  std::optional<std::vector<BeaconRegion>> siteBeaconRegions;
  Text sitePartnerIdentifier;
  Text projectAccentColor;
  Text projectAccentTextColor;
  Text projectLogoURL;
  bool alwaysShowsVehicleInfo = false;
  bool customerNameIsEditable = false;
  bool pickupTypeIsSelectable = false;
  bool requiresVehicleInfo = false;
  Text curbsideLocalizedString;
  Text pickupLocalizedString;
  Text customerName;
  Text customerCarType;
  Text customerCarColor;
  Text customerLicensePlate;
  std::mutex mutex;
};

using PlainOrders = std::vector<std::shared_ptr<PlainOrder>>;

/// The orders of a service answer, by simdjson and without any report of what is wrong: a text that
/// is not as it should be ends the process. `text` has a capacity with simdjson's padding.
PlainOrders readPlainOrders(const std::string& text);

}  // namespace ovinta::bench
