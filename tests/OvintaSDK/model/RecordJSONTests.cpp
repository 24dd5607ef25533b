// Records as applications read and write them.
#include <gmock/gmock.h>

#include "OvintaSDK/OvintaSDK.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using RecordJSONTest = SDKFixture;
using Kind = platform::CodingError::Kind;

template <class Record>
concept Readable = requires(std::string_view text) {
  readRecord<Record>(text);
};
template <class Record>
concept Writable = requires(const Record& record) {
  writeRecord(record);
};
static_assert(Readable<Order> && Writable<Order> && Readable<Site> && Writable<BeaconRegion>);
static_assert(Readable<OrdersResponse> && !Writable<OrdersResponse>);
static_assert(Readable<Customer> && !Writable<Customer>, "its token is not to be passed on");
static_assert(!Readable<OrderEvent> && Writable<OrderEvent>);
static_assert(!Readable<Beacon> && Writable<Beacon>);
static_assert(!Readable<Pagination> && !Writable<Pagination>);

/// Reads what it has written; the text.
template <class Record>
std::string throughText(const Record& record) {
  const auto text = writeRecord(record);
  if (!text) return text.error().what();
  const auto read = readRecord<Record>(*text);
  if (!read) return read.error().what();
  EXPECT_EQ(*read, record) << *text;
  return *text;
}

TEST_F(RecordJSONTest, WhatIsWrittenIsReadAgain) {
  EXPECT_EQ(throughText(CreateOrderInfo{.siteID = 42, .partnerIdentifier = "P"}),
            R"({"site_id":42,"partner_identifier":"P"})");
  EXPECT_EQ(throughText(ClaimOrderInfo{.customerName = "Ann", .pushToken = ""}),
            R"({"customer_name":"Ann","push_token":""})");
  EXPECT_EQ(throughText(UpdateOrderInfo{.pushToken = "token"}), R"({"push_token":"token"})");
  EXPECT_EQ(
      throughText(SetNewPassword{.resetPasswordToken = "a", .password = "b", .confirmation = ""}),
      R"({"reset_password_token":"a","password":"b","confirmation":""})");
  EXPECT_EQ(throughText(Geofence{.latitude = "1", .longitude = "2", .radiusMeters = 1.5}),
            R"({"latitude":"1","longitude":"2","radius_meters":1.5})");
  EXPECT_EQ(throughText(BeaconIdentifiers{.uuid = {}, .major = 1, .minor = 65535}),
            R"({"uuid":"00000000-0000-0000-0000-000000000000","major":1,"minor":65535})");
  EXPECT_EQ(*writeRecord(OrderEvent::stateChange(7, OrderState::ready)),
            R"({"order_id":7,"event_type":"state_change","state":"ready"})");

  const auto order = readRecord<Order>(kFullOrderText);
  ASSERT_TRUE(order);
  EXPECT_EQ(*writeRecord(**order), kFullOrderText);
  EXPECT_EQ(jsonText(**order), kFullOrderText);
  const auto orders = readRecord<OrdersResponse>(dataText(platform::List{requiredOrder(1)}));
  ASSERT_TRUE(orders);
  EXPECT_EQ(orders->data.at(0)->id, 1);
  const auto reader = readRecord<Customer>(*platform::jsonText(customerRecord()));
  ASSERT_TRUE(reader);
  EXPECT_EQ(**reader, customer());
  EXPECT_EQ(readRecord<UpdateOrderInfo>("{}")->pushToken, std::nullopt);
}

TEST_F(RecordJSONTest, TheErrorTellsWhatIsWrong) {
  const auto kind = [](const auto& coded) {
    return coded ? std::optional<Kind>() : coded.error().kind();
  };
  EXPECT_EQ(kind(readRecord<Site>("no JSON")), Kind::dataCorrupted);
  EXPECT_EQ(kind(readRecord<Site>("[]")), Kind::typeMismatch);
  const auto order = readRecord<OrderResponse>(dataText(with(requiredOrder(), {{"eta_at", 5}})));
  ASSERT_EQ(kind(order), Kind::typeMismatch);
  EXPECT_EQ(order.error().codingPath(), "data.eta_at");

  EXPECT_EQ(kind(writeRecord(LoginInfo{.emailAddress = "\xff", .password = ""})),
            Kind::invalidValue);
  EXPECT_EQ(jsonText(Site{.name = "\xff"}), std::nullopt);
  EXPECT_EQ(kind(platform::jsonText(platform::List{std::string("\xff")})), Kind::invalidValue);
}

TEST_F(RecordJSONTest, EachFieldOfTheCustomerHasItsSettingsKey) {
  CustomerInfo info = customer().info;
  std::vector<std::string_view> keys;
  for (const auto& path : CustomerInfo::defaultsKeyPaths()) {
    keys.push_back(path.key.rawValue());
    path.set(info, path.get(customer().info).value_or("") + "!");
  }
  EXPECT_THAT(
      keys, testing::ElementsAre("Customer Name", "Customer Vehicle Type", "Customer Vehicle Color",
                                 "Customer License Plate", "Customer Phone"));
  EXPECT_EQ(info, (CustomerInfo{.name = "Ann!",
                                .carType = "Van!",
                                .carColor = "Red!",
                                .licensePlate = "ABC 123!",
                                .phone = "555!"}));
}

TEST_F(RecordJSONTest, ASummaryOfAnOrderIsMadeForAnEntity) {
  const platform::EntityDescription entity{.name = "Order", .attributes = {}};
  const auto summary = CoreOrder::withEntity(entity, nullptr);
  EXPECT_EQ(summary->entityName(), "Order");
  EXPECT_EQ(summary->id(), 0);
  summary->setPartnerIdentifier("P");
  summary->setState(rawValue(OrderState::gone));
  EXPECT_EQ(summary->partnerIdentifier(), "P");
  EXPECT_EQ(summary->state(), 5);
  summary->setPartnerIdentifier({});
  EXPECT_EQ(summary->partnerIdentifier(), std::nullopt);
}

}  // namespace
}  // namespace ovinta::test
