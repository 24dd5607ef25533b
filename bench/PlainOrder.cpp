#include "bench/PlainOrder.h"

#include <simdjson.h>

#include <array>
#include <cstdlib>

#include "OvintaSDK/model/wire/KeyIndex.h"
#include "platform/UUID.h"
#include "platform/portable/FixedPatternDate.h"

namespace ovinta::bench {

namespace {

using platform::Date;
using platform::portable::OffsetStyle;
using platform::portable::readFixedDate;
using simdjson::dom::element;
using Reader = void (*)(PlainOrder&, const element&);

template <auto Member>
void text(PlainOrder& order, const element& value) {
  if (!value.is_null()) order.*Member = std::string_view(value);
}

template <auto Member>
void integer(PlainOrder& order, const element& value) {
  order.*Member = std::int64_t(value);
}

template <auto Member>
void flag(PlainOrder& order, const element& value) {
  order.*Member = bool(value);
}

template <auto Member>
void date(PlainOrder& order, const element& value) {
  if (!value.is_null()) order.*Member = readFixedDate(value, OffsetStyle::extended).value();
}

template <auto Member>
void state(PlainOrder& order, const element& value) {
  using State = std::remove_reference_t<decltype(order.*Member)>;
  order.*Member = stateFromWireString<State>(std::string_view(value)).value();
}

void window(PlainOrder& order, const element& value) {
  if (value.is_null()) return;
  const std::string_view both(value);
  const std::size_t middle = both.find('/');
  order.pickupWindow = {readFixedDate(both.substr(0, middle), OffsetStyle::basic).value(),
                        readFixedDate(both.substr(middle + 1), OffsetStyle::basic).value()};
}

void regions(PlainOrder& order, const element& value) {
  if (value.is_null()) return;
  const simdjson::dom::array list(value);
  auto& regions = order.siteBeaconRegions.emplace();
  regions.reserve(list.size());
  for (const element item : list) {
    BeaconRegion& region = regions.emplace_back();
    for (const auto& [key, field] : simdjson::dom::object(item)) {
      if (key == "uuid") region.uuid = platform::UUID::parse(field).value();
      if (key == "major") region.major = static_cast<std::uint16_t>(std::int64_t(field));
      if (key == "minor") region.minor = static_cast<std::uint16_t>(std::int64_t(field));
    }
  }
}

using O = PlainOrder;
constexpr std::array<std::pair<std::string_view, Reader>, 45> kReaders{{
    {"id", integer<&O::id>},
    {"site_id", integer<&O::siteID>},
    {"state", state<&O::state>},
    {"customer_state", state<&O::customerState>},
    {"customer_rating_value_string", text<&O::customerRating>},
    {"customer_rating_comments", text<&O::customerComment>},
    {"partner_identifier", text<&O::partnerIdentifier>},
    {"redemption_code", text<&O::redemptionCode>},
    {"redeemed_at", date<&O::redeemedAt>},
    {"display_name", text<&O::displayName>},
    {"pickup_window", window},
    {"pickup_type", text<&O::pickupType>},
    {"eta_at", date<&O::etaAt>},
    {"created_at", date<&O::createdAt>},
    {"completed_at", date<&O::completedAt>},
    {"updated_at", date<&O::updatedAt>},
    {"site_name", text<&O::siteName>},
    {"site_phone", text<&O::sitePhone>},
    {"site_street_address", text<&O::siteStreetAddress>},
    {"site_full_address", text<&O::siteFullAddress>},
    {"site_locality", text<&O::siteLocality>},
    {"site_region", text<&O::siteRegion>},
    {"site_country", text<&O::siteCountry>},
    {"site_postal_code", text<&O::sitePostalCode>},
    {"site_longitude", text<&O::siteLongitude>},
    {"site_latitude", text<&O::siteLatitude>},
    {"site_instructions", text<&O::siteInstructions>},
    {"site_description", text<&O::siteDescription>},
    {"site_cover_photo_url", text<&O::siteCoverPhotoURL>},
    {"site_beacon_regions", regions},
    {"site_partner_identifier", text<&O::sitePartnerIdentifier>},
    {"project_accent_color", text<&O::projectAccentColor>},
    {"project_accent_text_color", text<&O::projectAccentTextColor>},
    {"project_logo_url", text<&O::projectLogoURL>},
    {"project_mobile_flow_always_show_vehicle_info_fields", flag<&O::alwaysShowsVehicleInfo>},
    {"project_mobile_flow_customer_name_editing_enabled", flag<&O::customerNameIsEditable>},
    {"project_mobile_flow_pickup_type_selection_enabled", flag<&O::pickupTypeIsSelectable>},
    {"project_mobile_flow_require_vehicle_info_if_visible", flag<&O::requiresVehicleInfo>},
    {"curbside_localized_string", text<&O::curbsideLocalizedString>},
    {"pickup_localized_string", text<&O::pickupLocalizedString>},
    {"customer_name", text<&O::customerName>},
    {"customer_car_type", text<&O::customerCarType>},
    {"customer_car_color", text<&O::customerCarColor>},
    {"customer_license_plate", text<&O::customerLicensePlate>},
    {"push_token", text<&O::pushToken>},
}};

constexpr wire::KeyIndex<kReaders.size()> kIndex = [] {
  std::array<std::string_view, kReaders.size()> keys;
  for (std::size_t i = 0; i < keys.size(); ++i) keys[i] = kReaders[i].first;
  return wire::KeyIndex(keys);
}();

}  // namespace

PlainOrders readPlainOrders(const std::string& text) {
  static simdjson::dom::parser parser;
  const element answer = parser.parse(text.data(), text.size(), false);
  const simdjson::dom::array data = answer["data"];
  PlainOrders orders;
  orders.reserve(data.size());
  for (const element item : data) {
    PlainOrder& order = *orders.emplace_back(std::make_shared<PlainOrder>());
    for (const auto& [key, value] : simdjson::dom::object(item)) {
      const std::size_t position = kIndex.find(key);
      if (position < kReaders.size()) kReaders[position].second(order, value);
    }
  }
  return orders;
}

}  // namespace ovinta::bench
