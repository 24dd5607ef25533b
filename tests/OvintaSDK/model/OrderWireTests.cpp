#include "OvintaSDK/model/wire/OrderWire.h"

#include <gmock/gmock.h>

#include <array>
#include <set>

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"
#include "bench/SampleOrders.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

using platform::Dictionary;
using platform::Value;
using std::chrono::minutes;

using OrderWireTest = SDKFixture;

TEST_F(OrderWireTest, EveryKeyHasItsMember) {
  const OrderPtr order = decodeOrder(kFullOrderText);

  EXPECT_EQ(order->id, 7);
  EXPECT_EQ(order->siteID, 42);
  EXPECT_EQ(order->state(), OrderState::ready);
  EXPECT_EQ(order->customerState(), CustomerState::enRoute);

  const auto texts = textsOf(
      order->customerRating(), order->customerComment(), order->partnerIdentifier,
      order->redemptionCode, order->displayName, order->pickupType(), order->siteName,
      order->sitePhone, order->siteStreetAddress, order->siteFullAddress, order->siteLocality,
      order->siteRegion, order->siteCountry, order->sitePostalCode, order->siteLongitude,
      order->siteLatitude, order->siteInstructions, order->siteDescription,
      order->siteCoverPhotoURL, order->sitePartnerIdentifier, order->projectAccentColor,
      order->projectAccentTextColor, order->projectLogoURL, order->curbsideLocalizedString,
      order->pickupLocalizedString, order->customerName, order->customerCarType,
      order->customerCarColor, order->customerLicensePlate, order->pushToken());
  EXPECT_THAT(texts, ElementsAre("5", "Fast", "P-7", "CODE7", "Seven", "curbside", "name", "phone",
                                 "street", "full", "locality", "region", "country", "postal code",
                                 "-74.0", "40.7", "instructions", "description", "photo",
                                 "site partner", "accent", "accent text", "logo", "curb", "pickup",
                                 "Ann", "Van", "Red", "ABC 123", "token"));

  const platform::Date eight = kStart - minutes(30);
  EXPECT_EQ(order->redeemedAt, eight);
  EXPECT_EQ(order->etaAt(), eight + minutes(1));
  EXPECT_EQ(order->createdAt(), eight + minutes(2));
  EXPECT_EQ(order->completedAt(), eight + minutes(3));
  EXPECT_EQ(order->updatedAt(), eight + minutes(4));
  EXPECT_EQ(order->pickupWindow, PickupWindow(kStart, kStart + minutes(30)));

  // That it needs both texts is tested with the sites.
  EXPECT_EQ(order->siteLocation().value().coordinate, (platform::Coordinate{40.7, -74.0}));
  EXPECT_EQ(order->siteDistance({.coordinate = {40.7, -74.0}}), 0.0);

  ASSERT_TRUE(order->siteBeaconRegions);
  const auto uuid = platform::UUID::parse("2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6");
  EXPECT_EQ(*order->siteBeaconRegions, (std::vector<BeaconRegion>{{*uuid, 1, 2}}));
}

TEST_F(OrderWireTest, TheSampleForMeasurementsIsOfDifferentWholeOrders) {
  const auto orders = decoded<OrdersResponse>(bench::sampleOrders(1000)).data;
  const std::size_t keys = fullOrder().size();
  std::set<std::int64_t> numbers;
  for (const OrderPtr& order : orders) {
    numbers.insert(order->id);
    EXPECT_EQ(platform::parseJSON(encoded(order))->as<Dictionary>()->size(), keys);
  }
  EXPECT_EQ(numbers.size(), 1000U);
}

TEST_F(OrderWireTest, EachMutableFieldIsKeptByItself) {
  const auto expectKept = [this](const char* key, auto set, const auto& value, const char* text) {
    const OrderPtr order = decodeOrder(requiredOrder());
    ((*order).*set)(value);
    EXPECT_EQ(*platform::parseJSON(encoded(order))->as<platform::Dictionary>(),
              with(requiredOrder(), {{key, text}}));
    ((*order).*set)(std::nullopt);
    EXPECT_EQ(encoded(order), encoded(decodeOrder(requiredOrder())));
    EXPECT_EQ(queues->waitingCount(), 0U);
  };
  expectKept("pickup_type", &Order::setPickupType, "text", "text");
  expectKept("customer_rating_value_string", &Order::setCustomerRating, "text", "text");
  expectKept("customer_rating_comments", &Order::setCustomerComment, "text", "text");
  expectKept("push_token", &Order::setPushToken, "text", "text");
  const char* const instant = "2021-03-04T20:30:00.000Z";
  expectKept("eta_at", &Order::setEtaAt, kStart, instant);
  expectKept("completed_at", &Order::setCompletedAt, kStart, instant);
  expectKept("created_at", &Order::setCreatedAt, kStart, instant);
  expectKept("updated_at", &Order::setUpdatedAt, kStart, instant);
}

TEST_F(OrderWireTest, IsWrittenInTheOrderOfTheKeys) {
  EXPECT_EQ(encoded(decodeOrder(kFullOrderText)), kFullOrderText);
  EXPECT_EQ(encoded(decodeOrder(requiredOrder(-3))),
            R"({"id":-3,"site_id":42,"state":"created","customer_state":"created",)"
            R"("project_mobile_flow_always_show_vehicle_info_fields":false,)"
            R"("project_mobile_flow_customer_name_editing_enabled":false,)"
            R"("project_mobile_flow_pickup_type_selection_enabled":false,)"
            R"("project_mobile_flow_require_vehicle_info_if_visible":false})");
}

TEST_F(OrderWireTest, EachSwitchHasItsMember) {
  const char* const keys[] = {"project_mobile_flow_always_show_vehicle_info_fields",
                              "project_mobile_flow_customer_name_editing_enabled",
                              "project_mobile_flow_pickup_type_selection_enabled",
                              "project_mobile_flow_require_vehicle_info_if_visible"};
  for (std::size_t i = 0; i < std::size(keys); ++i) {
    const OrderPtr order = decodeOrder(with(requiredOrder(), {{keys[i], true}}));
    EXPECT_THAT((std::array{order->projectMobileFlowAlwaysShowVehicleInfoFields,
                            order->projectMobileFlowCustomerNameEditingEnabled,
                            order->projectMobileFlowPickupTypeSelectionEnabled,
                            order->projectMobileFlowRequireVehicleInfoIfVisible}),
                ElementsAre(i == 0, i == 1, i == 2, i == 3));
  }
}

TEST_F(OrderWireTest, RefusesMalformedValues) {
  const auto beacon = [](Value uuid, Value major) {
    return platform::List{Dictionary{{"uuid", std::move(uuid)}, {"major", std::move(major)}}};
  };
  const char* const kUUID = "2F234454-CF6D-4A0F-ADF2-F4911BA9FFA6";
  const struct {
    const char* key;
    Value value;
    const char* failure;
  } cases[] = {
      {"id", 7.5, "type mismatch at id"},
      {"site_id", 1e19, "data corrupted at site_id: Number does not fit into 64 bits."},
      {"state", "Ready", "value not found at state: Unknown Value"},
      {"customer_state", "gone", "value not found at customer_state: Unknown Value"},
      {"eta_at", "2021-03-04", "data corrupted at eta_at"},
      {"pickup_window", "later", "data corrupted at pickup_window: Invalid date range format"},
      {"site_beacon_regions", beacon("no uuid", 1),
       "data corrupted at site_beacon_regions[0].uuid"},
      {"site_beacon_regions", beacon(nullptr, 1), "value not found at site_beacon_regions[0].uuid"},
      {"site_beacon_regions", beacon(kUUID, 65536),
       "data corrupted at site_beacon_regions[0].major"},
      {"site_beacon_regions", beacon(kUUID, -1), "data corrupted at site_beacon_regions[0].major"},
      {"site_beacon_regions", beacon(kUUID, "1"), "type mismatch at site_beacon_regions[0].major"},
      {"site_beacon_regions", platform::List{1}, "type mismatch at site_beacon_regions[0]"},
      {"project_mobile_flow_pickup_type_selection_enabled", 1,
       "type mismatch at project_mobile_flow_pickup_type_selection_enabled"},
  };
  for (const auto& [key, value, failure] : cases) {
    const auto text = platform::writeJSON(with(fullOrder(), {{key, value}}));
    EXPECT_THAT(decodingFailure<OrderPtr>(text), StartsWith(failure)) << text;
  }
  EXPECT_THAT(decodingFailure<OrderPtr>("[]"), StartsWith("type mismatch"));
  EXPECT_THAT(decodingFailure<OrderPtr>("{}"), StartsWith("key not found"));
}

TEST_F(OrderWireTest, TellsTheFirstFailureInTheOrderOfReading) {
  const char* const kSwitch = "project_mobile_flow_require_vehicle_info_if_visible";
  // Each of them malformed, from the first to the last that is read; the text's order is another.
  const char* const keys[] = {"id",         "site_id", "state", "customer_state", "pickup_window",
                              "push_token", kSwitch};
  Dictionary record = fullOrder();
  for (const char* const key : keys) record.insert_or_assign(key, platform::List{});
  for (const char* const key : keys) {
    EXPECT_THAT(decodingFailure<OrderPtr>(platform::writeJSON(record)),
                StartsWith(std::string("type mismatch at ") + key + ": "));
    record.insert_or_assign(key, fullOrder().at(key));
  }
  EXPECT_EQ(encoded(decodeOrder(record)), kFullOrderText);

  EXPECT_THAT(decodingFailure<Customer>(R"({"email":1,"api_token":2,"car_type":3})"),
              StartsWith("key not found: No value associated with key \"name\""));
  EXPECT_THAT(decodingFailure<Customer>(R"({"email":1,"api_token":2,"name":"Ann","phone":3})"),
              StartsWith("type mismatch at phone"));
  EXPECT_THAT(decodingFailure<Customer>(R"({"email":1,"name":"Ann"})"),
              StartsWith("type mismatch at email"));
}

TEST_F(OrderWireTest, ReadsUnusualButValidTexts) {
  const std::string rest = platform::writeJSON(without(requiredOrder(), "id")).substr(1);
  const std::pair<const char*, std::int64_t> ids[] = {
      // Of a key given twice the last counts.
      {R"("id":1,"id":2,)", 2},
      // Unknown keys are skipped, whatever they hold; keys are compared to the letter.
      {R"("Id":1,"ID":{"id":[2]},"id":3,"":4,"iid":5,)", 3},
      {R"("size":1e400,"count":-99999999999999999999,"id":3,)", 3},
      {"\"\\u0069d\": 4 ,\n\t", 4},
  };
  for (const auto& [text, id] : ids) EXPECT_EQ(decodeOrder('{' + (text + rest))->id, id) << text;
  const std::string deep =
      "\"deep\":" + std::string(1100, '[') + std::string(1100, ']') + ",\"id\":6,";
  EXPECT_EQ(decodeOrder('{' + (deep + rest))->id, 6);

  const std::string twice = R"({"push_token":"a","push_token":null,"id":1,)";
  EXPECT_EQ(decodeOrder(twice + rest)->pushToken(), std::nullopt);
}

TEST_F(OrderWireTest, OneBadOrderSpoilsTheList) {
  const platform::List orders{requiredOrder(1), with(requiredOrder(2), {{"state", "lost"}})};
  EXPECT_EQ(decodingFailure<OrdersResponse>(dataText(orders)),
            "value not found at data[1].state: Unknown Value");
}

}  // namespace
}  // namespace ovinta::test
