#pragma once

#include "OvintaSDK/model/OrderResponse.h"
#include "OvintaSDK/model/wire/BeaconWire.h"

namespace ovinta::wire {

template <>
struct WireTable<Order> {
  using Fixed = OrderDetails;
  using Mutable = OrderProgress;

  static constexpr auto kFields = table(
      field("id", &Fixed::id), field("site_id", &Fixed::siteID), field("state", &Mutable::state),
      field("customer_state", &Mutable::customerState),
      field("customer_rating_value_string", &Mutable::customerRating),
      field("customer_rating_comments", &Mutable::customerComment),
      field("partner_identifier", &Fixed::partnerIdentifier),
      field("redemption_code", &Fixed::redemptionCode), field("redeemed_at", &Fixed::redeemedAt),
      field("display_name", &Fixed::displayName), field("pickup_window", &Fixed::pickupWindow),
      field("pickup_type", &Mutable::pickupType), field("eta_at", &Mutable::etaAt),
      field("created_at", &Mutable::createdAt), field("completed_at", &Mutable::completedAt),
      field("updated_at", &Mutable::updatedAt),

      field("site_name", &Fixed::siteName), field("site_phone", &Fixed::sitePhone),
      field("site_street_address", &Fixed::siteStreetAddress),
      field("site_full_address", &Fixed::siteFullAddress),
      field("site_locality", &Fixed::siteLocality), field("site_region", &Fixed::siteRegion),
      field("site_country", &Fixed::siteCountry), field("site_postal_code", &Fixed::sitePostalCode),
      field("site_longitude", &Fixed::siteLongitude), field("site_latitude", &Fixed::siteLatitude),
      field("site_instructions", &Fixed::siteInstructions),
      field("site_description", &Fixed::siteDescription),
      field("site_cover_photo_url", &Fixed::siteCoverPhotoURL),
      field("site_beacon_regions", &Fixed::siteBeaconRegions),
      field("site_partner_identifier", &Fixed::sitePartnerIdentifier),

      field("project_accent_color", &Fixed::projectAccentColor),
      field("project_accent_text_color", &Fixed::projectAccentTextColor),
      field("project_logo_url", &Fixed::projectLogoURL),
      lastReadField("project_mobile_flow_always_show_vehicle_info_fields",
                    &Fixed::projectMobileFlowAlwaysShowVehicleInfoFields),
      lastReadField("project_mobile_flow_customer_name_editing_enabled",
                    &Fixed::projectMobileFlowCustomerNameEditingEnabled),
      lastReadField("project_mobile_flow_pickup_type_selection_enabled",
                    &Fixed::projectMobileFlowPickupTypeSelectionEnabled),
      lastReadField("project_mobile_flow_require_vehicle_info_if_visible",
                    &Fixed::projectMobileFlowRequireVehicleInfoIfVisible),

      field("curbside_localized_string", &Fixed::curbsideLocalizedString),
      field("pickup_localized_string", &Fixed::pickupLocalizedString),
      field("customer_name", &Fixed::customerName),
      field("customer_car_type", &Fixed::customerCarType),
      field("customer_car_color", &Fixed::customerCarColor),
      field("customer_license_plate", &Fixed::customerLicensePlate),
      field("push_token", &Mutable::pushToken));
};

/// An order is made of two structures; the fixed one has constant members, so that it is built in
/// one go from its fields in wire order.
template <>
struct WireForm<OrderPtr> {
  static OrderPtr decode(const platform::JSONValue& value, const Dates& dates);
  static void encode(platform::JSONWriter& writer, const OrderPtr& order, const Dates& dates);
};

/// An order that is not behind a pointer is written, never read.
template <>
struct WireForm<Order> {
  static void encode(platform::JSONWriter& writer, const Order& order, const Dates& dates);
};

template <>
struct WireTable<OrderResponse> {
  static constexpr auto kFields = table(field("data", &OrderResponse::data));
};

template <>
struct WireTable<OrdersResponse> {
  static constexpr auto kFields = table(field("data", &OrdersResponse::data));
};

}  // namespace ovinta::wire
