#include "tests/support/CannedRecords.h"

#include <utility>

#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/model/wire/OrderWire.h"
#include "platform/JSON.h"

namespace ovinta::test {

using platform::Dictionary;
using platform::Value;

const std::string_view kFullOrderText =
    R"({"id":7,"site_id":42,"state":"ready","customer_state":"en_route",)"
    R"("customer_rating_value_string":"5","customer_rating_comments":"Fast",)"
    R"("partner_identifier":"P-7","redemption_code":"CODE7",)"
    R"("redeemed_at":"2021-03-04T20:00:00.000Z","display_name":"Seven",)"
    R"("pickup_window":"2021-03-04T15:30:00.000-0500/2021-03-04T16:00:00.000-0500",)"
    R"("pickup_type":"curbside","eta_at":"2021-03-04T20:01:00.000Z",)"
    R"("created_at":"2021-03-04T20:02:00.000Z","completed_at":"2021-03-04T20:03:00.000Z",)"
    R"("updated_at":"2021-03-04T20:04:00.000Z",)"
    R"("site_name":"name","site_phone":"phone","site_street_address":"street",)"
    R"("site_full_address":"full","site_locality":"locality","site_region":"region",)"
    R"("site_country":"country","site_postal_code":"postal code","site_longitude":"-74.0",)"
    R"("site_latitude":"40.7","site_instructions":"instructions",)"
    R"("site_description":"description","site_cover_photo_url":"photo",)"
    R"("site_beacon_regions":[{"uuid":"2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6","major":1,"minor":2}],)"
    R"("site_partner_identifier":"site partner",)"
    R"("project_accent_color":"accent","project_accent_text_color":"accent text",)"
    R"("project_logo_url":"logo",)"
    R"("project_mobile_flow_always_show_vehicle_info_fields":true,)"
    R"("project_mobile_flow_customer_name_editing_enabled":false,)"
    R"("project_mobile_flow_pickup_type_selection_enabled":false,)"
    R"("project_mobile_flow_require_vehicle_info_if_visible":false,)"
    R"("curbside_localized_string":"curb","pickup_localized_string":"pickup",)"
    R"("customer_name":"Ann","customer_car_type":"Van","customer_car_color":"Red",)"
    R"("customer_license_plate":"ABC 123","push_token":"token"})";

Dictionary fullOrder() {
  // The text is JSON and an object, as the tests of the order's wire form show.
  return *platform::parseJSON(kFullOrderText)->as<Dictionary>();
}

Dictionary requiredOrder(std::int64_t id) {
  return {{"id", id},
          {"site_id", 42},
          {"state", "created"},
          {"customer_state", "created"},
          {"project_mobile_flow_always_show_vehicle_info_fields", false},
          {"project_mobile_flow_customer_name_editing_enabled", false},
          {"project_mobile_flow_pickup_type_selection_enabled", false},
          {"project_mobile_flow_require_vehicle_info_if_visible", false}};
}

Dictionary with(Dictionary record, std::initializer_list<Dictionary::value_type> fields) {
  for (const auto& [key, value] : fields) record.insert_or_assign(key, value);
  return record;
}

Dictionary without(Dictionary record, std::string_view key) {
  record.erase(record.find(key));
  return record;
}

std::string dataText(Value record) {
  return platform::writeJSON(Dictionary{{"data", std::move(record)}});
}

std::string sitesText(platform::List records, int current, int count) {
  return platform::writeJSON(
      Dictionary{{"data", std::move(records)},
                 {"pages", Dictionary{{"current", current}, {"count", count}, {"per", 25}}}});
}

OrderPtr decodeOrder(std::string_view text) {
  const auto document = platform::JSONDocument::parse(text);
  return wire::decode<OrderPtr>(document->root(), Library::process().context()->dates());
}

OrderPtr decodeOrder(const Dictionary& record) { return decodeOrder(platform::writeJSON(record)); }

Customer customer() {
  return {.token = kToken,
          .emailAddress = "ann@example.org",
          .info = {.name = "Ann",
                   .carType = "Van",
                   .carColor = "Red",
                   .licensePlate = "ABC 123",
                   .phone = "555"}};
}

Dictionary customerRecord() {
  return {{"api_token", kToken}, {"email", "ann@example.org"}, {"name", "Ann"}, {"car_type", "Van"},
          {"car_color", "Red"},  {"license_plate", "ABC 123"}, {"phone", "555"}};
}

}  // namespace ovinta::test
