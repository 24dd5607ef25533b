#include "bench/SampleOrders.h"

namespace ovinta::bench {

namespace {

constexpr const char* kOrder = R"({"id":1234567,"site_id":42,"state":"preparing",
"customer_state":"en_route","partner_identifier":"P-2021-000123","redemption_code":"ABC123",
"redeemed_at":"2021-03-04T15:00:12.345Z","display_name":"Order 123",
"pickup_window":"2021-03-04T15:30:00.000-0500/2021-03-04T16:00:00.000-0500",
"pickup_type":"curbside","eta_at":"2021-03-04T15:42:00.000Z","completed_at":null,
"created_at":"2021-03-04T14:58:01.002Z","updated_at":"2021-03-04T15:01:59.900Z",
"customer_rating_value_string":null,"customer_rating_comments":null,
"site_name":"Harbour Street Market","site_phone":"+1 555 010 0199",
"site_street_address":"12 Harbour Street","site_full_address":"12 Harbour Street, Springfield",
"site_locality":"Springfield","site_region":"NY","site_country":"US","site_postal_code":"10001",
"site_longitude":"-73.987654","site_latitude":"40.712345",
"site_instructions":"Turn left behind the gate.\nPark on a green space.",
"site_description":"Caf\u00e9 and market hall","site_cover_photo_url":"https://example.com/p/1.jpg",
"site_beacon_regions":[{"uuid":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","major":1,"minor":2},
{"uuid":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","major":1,"minor":3}],
"site_partner_identifier":"S-42","project_accent_color":"#0a84ff",
"project_accent_text_color":"#ffffff","project_logo_url":"https://example.com/logo.png",
"customer_name":"Alex Example","customer_car_type":"Estate","customer_car_color":"Blue",
"customer_license_plate":"ABC 1234",
"project_mobile_flow_always_show_vehicle_info_fields":true,
"project_mobile_flow_customer_name_editing_enabled":false,
"project_mobile_flow_pickup_type_selection_enabled":true,
"project_mobile_flow_require_vehicle_info_if_visible":false,
"curbside_localized_string":"Curbside","pickup_localized_string":"In store",
"push_token":"dev:0011223344556677889900aabbccddeeff"})";

}  // namespace

std::string sampleOrders(std::size_t count) {
  std::string text = R"({"data":[)";
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) text += ',';
    text += kOrder;
  }
  return text + "]}";
}

}  // namespace ovinta::bench
