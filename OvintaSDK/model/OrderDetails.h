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
/// their keys on the wire. What the service left out is absent; texts are as it sent them.
/// Constant, so that any thread may read it.
struct OrderDetails {
  /// The service's numbers for the order and for its site (`Site::id`).
  const std::int64_t id;
  const std::int64_t siteID;
  /// The retailer's own identifier of the order.
  const std::optional<std::string> partnerIdentifier;
  /// The code by which a customer finds and claims the order, and when that was done.
  const std::optional<std::string> redemptionCode;
  const std::optional<platform::Date> redeemedAt;
  /// The order's name for people.
  const std::optional<std::string> displayName;
  /// When it is to be picked up.
  const std::optional<PickupWindow> pickupWindow;

  /// Name, phone number and address of the site, in words for people.
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
  /// What the customer is to do at the site, what the site is, and where its picture is.
  const std::optional<std::string> siteInstructions;
  const std::optional<std::string> siteDescription;
  const std::optional<std::string> siteCoverPhotoURL;
  /// The beacons that stand at the site; listened for while the order is open.
  const std::optional<std::vector<BeaconRegion>> siteBeaconRegions;
  /// The retailer's own identifier of the site.
  const std::optional<std::string> sitePartnerIdentifier;

  /// Colours and logo with which the application may show the site's project.
  const std::optional<std::string> projectAccentColor;
  const std::optional<std::string> projectAccentTextColor;
  const std::optional<std::string> projectLogoURL;
  /// What the project wants of the application's screens; the library does not act on it.
  const bool projectMobileFlowAlwaysShowVehicleInfoFields;
  const bool projectMobileFlowCustomerNameEditingEnabled;
  const bool projectMobileFlowPickupTypeSelectionEnabled;
  const bool projectMobileFlowRequireVehicleInfoIfVisible;

  /// The service's words for people for a pickup at the curb, and for a pickup.
  const std::optional<std::string> curbsideLocalizedString;
  const std::optional<std::string> pickupLocalizedString;

  /// The customer's name and vehicle, as the order was made with them.
  const std::optional<std::string> customerName;
  const std::optional<std::string> customerCarType;
  const std::optional<std::string> customerCarColor;
  const std::optional<std::string> customerLicensePlate;
};

}  // namespace ovinta
