// Records that never change once they are built, and those that cannot be built without a text.
#include <gtest/gtest.h>

#include <type_traits>

#include "OvintaSDK/model/ClaimOrderInfo.h"
#include "OvintaSDK/model/CreateOrderInfo.h"
#include "OvintaSDK/model/LocationUpdateEvent.h"
#include "OvintaSDK/model/Order.h"
#include "OvintaSDK/model/RecordJSON.h"
#include "OvintaSDK/model/UpdateOrderInfo.h"
#include "tests/support/CannedRecords.h"

namespace ovinta::test {
namespace {

template <auto kAssign, class Record>
constexpr bool kMayAssign = std::is_invocable_v<decltype(kAssign), Record&>;

// Each assigns a member to itself, where that is allowed.
constexpr auto kName = [](auto& r) -> decltype(r.customerName = r.customerName) {
  return r.customerName = r.customerName;
};
constexpr auto kStart = [](auto& r) -> decltype(r.start = r.start) { return r.start = r.start; };
constexpr auto kEnd = [](auto& r) -> decltype(r.end = r.end) { return r.end = r.end; };
constexpr auto kOrderID = [](auto& r) -> decltype(r.orderID = r.orderID) {
  return r.orderID = r.orderID;
};
constexpr auto kBeacons = [](auto& r) -> decltype(r.beacons = r.beacons) {
  return r.beacons = r.beacons;
};
static_assert(kMayAssign<kName, CreateOrderInfo>, "an application fills it in");
static_assert(!kMayAssign<kName, Order>);
static_assert(!kMayAssign<kStart, PickupWindow> && !kMayAssign<kEnd, PickupWindow>);
static_assert(!kMayAssign<kOrderID, OrderEvent> && !kMayAssign<kBeacons, OrderEvent>);
static_assert(std::is_nothrow_move_constructible_v<PickupWindow>);
static_assert(std::is_nothrow_move_constructible_v<OrderEvent>);

template <class Record>
concept BuiltOfNothing = requires {
  Record{};
}
|| std::is_default_constructible_v<Record>;
template <class Record, class Text>
concept BuiltOfToken = requires(Text text) {
  Record{.pushToken = text};
};
static_assert(BuiltOfNothing<CreateOrderInfo>);
static_assert(!BuiltOfNothing<ClaimOrderInfo> && !BuiltOfNothing<UpdateOrderInfo>);
static_assert(BuiltOfToken<ClaimOrderInfo, std::string> && BuiltOfToken<UpdateOrderInfo, char*>);
static_assert(!BuiltOfToken<ClaimOrderInfo, std::optional<std::string>>);
static_assert(!BuiltOfToken<UpdateOrderInfo, std::nullopt_t>);
static_assert(!BuiltOfToken<UpdateOrderInfo, std::nullptr_t>);

// Applications that are built already know records by these places.
static_assert(ReadableRecords::positionOf<Order>() == 0);
static_assert(ReadableRecords::positionOf<Site>() == 3);
static_assert(ReadableRecords::positionOf<Customer>() == 5);
static_assert(ReadableRecords::positionOf<SetNewPassword>() == 11);
static_assert(ReadableRecords::positionOf<BeaconIdentifiers>() == 16);
static_assert(WritableRecords::positionOf<Order>() == 0);
static_assert(WritableRecords::positionOf<CustomerInfo>() == 4);
static_assert(WritableRecords::positionOf<SetNewPassword>() == 9);
static_assert(WritableRecords::positionOf<BeaconIdentifiers>() == 15);

TEST(ImmutableRecordTest, ARequiredTextComparesAsAText) {
  const UpdateOrderInfo info{.pushToken = "token"};
  EXPECT_TRUE(info.pushToken == "token" && info.pushToken != std::string("other"));
  EXPECT_TRUE("token" == info.pushToken && info.pushToken == std::optional<std::string>("token"));
  EXPECT_TRUE(info == UpdateOrderInfo{.pushToken = std::string_view("token")});
}

TEST(ImmutableRecordTest, AnEventIsMovedWithItsViews) {
  OrderEvent event = locationUpdateEvent(7, {}, std::vector(3, Beacon{}), 90);
  const Beacon* const beacons = event.beacons->data();
  const OrderEvent moved = std::move(event);
  EXPECT_EQ(moved.beacons->data(), beacons) << "not copied";

  event = OrderEvent::rating(8, 5, "Fine");
  OrderEvent copy = event;
  event = moved;
  EXPECT_EQ(event, moved);
  EXPECT_EQ(event.orderID, 7);
  EXPECT_EQ(copy.orderID, 8);
  EXPECT_EQ(copy.customerComments, "Fine");
}

TEST(ImmutableRecordTest, AWindowIsReplacedAsAWhole) {
  const PickupWindow window{platform::Date(), platform::kDistantPast};
  std::optional<PickupWindow> held(platform::kDistantPast);
  held = window;
  EXPECT_EQ(*held, window);
}

}  // namespace
}  // namespace ovinta::test
