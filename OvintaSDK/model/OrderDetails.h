#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "../../platform/Date.h"
#include "OvintaSDK/location/BeaconRegion.h"
#include "OvintaSDK/model/PickupWindow.h"

namespace ovinta {

/// What never changes in an order once it has come from the service: identity and codes, the site,
/// the project that the site belongs to, the customer's vehicle. The members stand in the order of
/// their keys on the wire.
struct OrderDetails {
  const std::int64_t id;
  const std::int64_t siteID;
  const std::optional<std::string> partnerIdentifier;
  const std::optional<std::string> redemptionCode;
  const std::optional<platform::Date> redeemedAt;
  const std::optional<std::string> displayName;
  const std::optional<PickupWindow> pickupWindow;

  const std::optional<std::string> siteName;
  const std::optional<std::string> sitePhone;
  const std::optional<std::string> siteStreetAddress;
  const std::optional<std::string> siteFullAddress;
  const std::optional<std::string> siteLocality;
  const std::optional<std::string> siteRegion;
  const std::optional<std::string> siteCountry;
  const std::optional<std::string> sitePostalCode;
  /// Degrees as decimal text, as `siteLatitude`; see `Order::siteLocation`.
  const std::optional<std::string> siteLongitude;
  const std::optional<std::string> siteLatitude;
  const std::optional<std::string> siteInstructions;
  const std::optional<std::string> siteDescription;
  const std::optional<std::string> siteCoverPhotoURL;
  const std::optional<std::vector<BeaconRegion>> siteBeaconRegions;
  const std::optional<std::string> sitePartnerIdentifier;

  const std::optional<std::string> projectAccentColor;
  const std::optional<std::string> projectAccentTextColor;
  const std::optional<std::string> projectLogoURL;
  const bool projectMobileFlowAlwaysShowVehicleInfoFields;
  const bool projectMobileFlowCustomerNameEditingEnabled;
  const bool projectMobileFlowPickupTypeSelectionEnabled;
  const bool projectMobileFlowRequireVehicleInfoIfVisible;

  const std::optional<std::string> curbsideLocalizedString;
  const std::optional<std::string> pickupLocalizedString;

  const std::optional<std::string> customerName;
  const std::optional<std::string> customerCarType;
  const std::optional<std::string> customerCarColor;
  const std::optional<std::string> customerLicensePlate;
};

}  // namespace ovinta
