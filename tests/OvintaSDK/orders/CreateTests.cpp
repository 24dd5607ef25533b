// Creating orders, for a customer that is there and for one that is created along the way.
#include <gmock/gmock.h>

#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta::test {
namespace {

class Create : public OrdersFixture {
 protected:
  Create() { answer("POST", "m/v1/orders", dataAnswer(requiredOrder(7))); }

  std::string create(const CreateOrderInfo& info) {
    orders.create(info, tell());
    return outcome();
  }
};

TEST_F(Create, SendsTheOrderAndThenThePermission) {
  signIn();
  EXPECT_EQ(create({.siteID = 42, .partnerIdentifier = "P", .state = OrderState::ready}),
            R"(
log Creating order for existing customer
POST m/v1/orders as customer-token {"site_id":42,"partner_identifier":"P","state":"ready"}
told order 7
POST m/v1/events as customer-token )"
            R"({"order_id":7,"event_type":"permission_update",)"
            R"("location_permission":"authorized_always"}
log Successfully created order event)");
  EXPECT_EQ(lists(), kNoLists);
  EXPECT_EQ(lastFetch(), "none");
  location->setAuthorizationStatus(5);
  EXPECT_THAT(create({.siteID = 42, .partnerIdentifier = "P"}), testing::EndsWith("told order 7"))
      << "a permission that the service does not know";
}

TEST_F(Create, TakesTheOrderFromSingleValues) {
  signIn();
  Ovinta::setPushToken("device");
  const PickupWindow window(kStart);
  const CustomerInfo ann{.name = "Ann", .carType = "Van", .phone = "555"};
  orders.create(42, "P", ann, window, OrderState::delayed);
  orders.create(42, "P", ann, std::nullopt);
  drain();
  const std::string common =
      R"({"data":{"site_id":42,"partner_identifier":"P","customer_car_type":"Van",)"
      R"("customer_name":"Ann","customer_phone":"555","push_token":"device")";
  EXPECT_THAT(bodies("POST", "m/v1/orders"),
              testing::ElementsAre(
                  common + R"(,"state":"delayed","pickup_window":"2021-03-04T15:30:00.000-0500/)"
                           R"(2021-03-04T15:30:00.000-0500"}})",
                  common + "}}"));
}

TEST_F(Create, CreatesTheCustomerFirstWithTheDetails) {
  EXPECT_THAT(create({.siteID = 42,
                      .partnerIdentifier = "P",
                      .customerCarColor = "Red",
                      .customerCarType = "Van",
                      .customerLicensePlate = "ABC 123",
                      .customerName = "Ann",
                      .customerPhone = "555"}),
              testing::StartsWith(R"(
POST m/v1/customer {"name":"Ann","car_type":"Van","car_color":"Red","license_plate":"ABC 123",)"
                                  R"("phone":"555","terms_of_service":true,"age_verification":true}
POST m/v1/orders as new-token {"site_id":42,)"));
  EXPECT_EQ(UserDefaultsKey::customerToken.stringValue(), "new-token");
  Ovinta::customer().setCurrent(nullptr);
  EXPECT_THAT(create({.siteID = 42, .partnerIdentifier = "P", .customerName = "Ann"}),
              testing::StartsWith(R"(
POST m/v1/customer {"name":"Ann","car_type":"","car_color":"","license_plate":"",)"
                                  R"("terms_of_service":true,"age_verification":true}
POST m/v1/orders as new-token {"site_id":42,"partner_identifier":"P","customer_name":"Ann"}
told order 7
POST m/v1/events as new-token )"));
}

TEST_F(Create, FailsWithoutABaseURLAndWithoutACustomer) {
  const CreateOrderInfo nameless{.siteID = 42, .partnerIdentifier = "P"};
  UserDefaultsKey::apiBase.remove();
  EXPECT_EQ(create(nameless), R"(
log Could not load API url
told Error with Orders Manager: Could not load API url)");
  time.advance(std::chrono::seconds(1));
  useBaseURL();
  EXPECT_EQ(create(nameless), R"(
log Could not load customer
told Error with Orders Manager: Could not load customer)");
  EXPECT_EQ(lastFetch(), "1 s, Error with Orders Manager: Could not load customer");

  time.advance(std::chrono::seconds(1));
  answer("POST", "m/v1/customer", Answer::json(422, R"({"errors":{"name":["is missing"]}})"));
  EXPECT_EQ(create({.siteID = 42, .partnerIdentifier = "P", .customerName = ""}),
            R"(
POST m/v1/customer {"name":"","car_type":"","car_color":"","license_plate":"",)"
            R"("terms_of_service":true,"age_verification":true}
log Could not load customer
told Error with Orders Manager: Could not load customer)");
  EXPECT_EQ(lastFetch(), "2 s, Error with Orders Manager: Could not load customer");
  EXPECT_EQ(Ovinta::customer().current(), nullptr);
}

TEST_F(Create, PassesTheServicesErrorOn) {
  signIn();
  answer("POST", "m/v1/orders", Answer::json(422, R"({"errors":{"site_id":["is unknown"]}})"));
  EXPECT_EQ(create({.siteID = 42, .partnerIdentifier = "P"}), R"(
log Creating order for existing customer
POST m/v1/orders as customer-token {"site_id":42,"partner_identifier":"P"}
told Error Creating Order: is unknown)");
  EXPECT_EQ(lastFetch(), "none");
}

}  // namespace
}  // namespace ovinta::test
