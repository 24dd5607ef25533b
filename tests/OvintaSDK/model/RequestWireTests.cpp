#include <gmock/gmock.h>

#include <cmath>

#include "OvintaSDK/model/LocationUpdateEvent.h"
#include "OvintaSDK/model/wire/OrderEventWire.h"
#include "OvintaSDK/model/wire/OrderRequestWire.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using namespace std::chrono_literals;

using RequestWireTest = SDKFixture;

TEST_F(RequestWireTest, CreatingAnOrder) {
  const PickupWindow window(kStart, kStart + 30min);
  const std::string full =
      R"({"site_id":42,"partner_identifier":"P","customer_car_color":"Red",)"
      R"("customer_car_type":"Van","customer_license_plate":"ABC 123","customer_name":"Ann",)"
      R"("customer_phone":"555","push_token":"token","state":"created",)"
      R"("pickup_window":"2021-03-04T15:30:00.000-0500/2021-03-04T16:00:00.000-0500"})";
  EXPECT_EQ(encoded(CreateOrderInfo::withCustomerInfo(42, "P", customer().info, "token",
                                                      OrderState::created, window)),
            full);
  EXPECT_EQ(encoded(decoded<CreateOrderInfo>(full)), full);
  EXPECT_EQ(encoded(CreateOrderInfo{.siteID = 42, .partnerIdentifier = ""}),
            R"({"site_id":42,"partner_identifier":""})");
  EXPECT_EQ(encoded(CreateOrderInfo::withCustomerInfo(1, "P", {.name = ""}, {}, {}, {})),
            R"({"site_id":1,"partner_identifier":"P","customer_name":""})");
  EXPECT_EQ(encodingFailure(CreateOrderInfo{
                .siteID = 1, .partnerIdentifier = "P", .state = static_cast<OrderState>(9)}),
            "invalid value at state: Invalid Value");
  EXPECT_THAT(decodingFailure<CreateOrderInfo>(R"({"site_id":1})"),
              testing::HasSubstr("\"partner_identifier\""));
}

TEST_F(RequestWireTest, ClaimingAnOrderAlwaysTellsThePushToken) {
  const std::string full =
      R"({"customer_car_color":"Red","customer_car_type":"Van",)"
      R"("customer_license_plate":"ABC 123","customer_name":"Ann","customer_phone":"555",)"
      R"("push_token":"","pickup_type":"curbside"})";
  EXPECT_EQ(encoded(ClaimOrderInfo::withCustomerInfo(customer().info, "", "curbside")), full);
  EXPECT_EQ(encoded(decoded<ClaimOrderInfo>(full)), full);
  EXPECT_EQ(encoded(decoded<ClaimOrderInfo>("{}")), R"({"push_token":null})");
}

TEST_F(RequestWireTest, OrderEvents) {
  const platform::Location location{.coordinate = {.latitude = 40.7, .longitude = -74.25},
                                    .horizontalAccuracy = 5,
                                    .speed = -1,
                                    .timestamp = kStart};
  const Beacon beacon{.identifiers = {.uuid = {}, .major = 1, .minor = 65535},
                      .rssi = {.count = 1, .value = -61.1F},
                      .distance = {.count = 1, .value = 2.5F},
                      .scannedAt = kStart};
  const std::pair<OrderEvent, std::string> cases[] = {
      {locationUpdateEvent(7, location, std::vector{beacon}, 90.9),
       R"({"order_id":7,"event_type":"location_update","longitude":-74.25,"latitude":40.7,)"
       R"("accuracy":5,"speed":-1,"beacons":[{"rssi":-61.1,"distance":2.5,)"
       R"("uuid":"00000000-0000-0000-0000-000000000000","major":1,"minor":65535}],)"
       R"("eta_seconds":90})"},
      {OrderEvent::customerStateChange(7, CustomerState::enRoute, -0.9),
       R"({"order_id":7,"event_type":"state_change","eta_seconds":0,"customer_state":"en_route"})"},
      {OrderEvent::rating(7, 5, "Fine \"and\" fast\n"),
       R"({"order_id":7,"event_type":"customer_rating","customer_rating_value":5,)"
       R"("customer_rating_comments":"Fine \"and\" fast\n"})"},
  };
  for (const auto& [event, text] : cases) EXPECT_EQ(encoded(event), text);
}

TEST_F(RequestWireTest, EstimatesThatNoIntegerHoldsAreLeftOut) {
  const std::pair<double, std::optional<std::int64_t>> cases[] = {
      {90.9, 90},     {-90.9, -90},    {-0x1p63, std::numeric_limits<std::int64_t>::min()},
      {0x1p63, {}},   {-0x1.8p63, {}}, {std::nan(""), {}},
      {INFINITY, {}}, {-INFINITY, {}}};
  const auto whole = [](EtaSeconds seconds) { return seconds.whole(); };
  EXPECT_EQ(whole(0x20000000000001), 0x20000000000001) << "no double holds it";
  EXPECT_EQ(whole(std::numeric_limits<std::uint64_t>::max()), std::nullopt);
  EXPECT_EQ(whole(std::optional<int>()), std::nullopt);
  for (const auto& [seconds, etaSeconds] : cases) {
    EXPECT_EQ(OrderEvent::customerStateChange(1, CustomerState::nearby, seconds).etaSeconds,
              etaSeconds)
        << seconds;
    EXPECT_EQ(locationUpdateEvent(1, {}, {}, seconds).etaSeconds, etaSeconds) << seconds;
  }
}

}  // namespace
}  // namespace ovinta::test
