// Creating orders, for a customer that is there and for one that is created along the way.
#include <gmock/gmock.h>

#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta::test {
namespace {

class Create : public OrdersFixture {
 protected:
  Create() { answer("POST", "m/v1/orders", dataAnswer(requiredOrder(7))); }

  Steps create(const CreateOrderInfo& info) {
    orders.create(info, tell());
    return outcome();
  }

  static Step requestedOrder(const std::string& token, const std::string& details) {
    return requested("POST", "m/v1/orders", token,
                     R"({"site_id":42,"partner_identifier":"P")" + details + "}");
  }

  static Step requestedCustomer(const std::string& details) {
    return requested("POST", "m/v1/customer", "",
                     "{" + details + R"("terms_of_service":true,"age_verification":true})");
  }

  /// What follows the service's acceptance.
  static Steps accepted(const std::string& token) {
    return {told(theOrder(7)), reportedPermission(7, "authorized_always", token),
            logged(Line::eventAccepted)};
  }
};

TEST_F(Create, SendsTheOrderAndThenThePermission) {
  signIn();
  EXPECT_THAT(
      create({.siteID = 42, .partnerIdentifier = "P", .state = OrderState::ready}),
      are(logged(Line::creating), requestedOrder(kToken, R"(,"state":"ready")"), accepted(kToken)));
  EXPECT_EQ(lists(), noLists);
  EXPECT_EQ(lastFetch(), std::nullopt);
  location->setAuthorizationStatus(5);
  EXPECT_THAT(create({.siteID = 42, .partnerIdentifier = "P"}),
              are(logged(Line::creating), requestedOrder(kToken, ""), told(theOrder(7))))
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
  EXPECT_THAT(
      create({.siteID = 42,
              .partnerIdentifier = "P",
              .customerCarColor = "Red",
              .customerCarType = "Van",
              .customerLicensePlate = "ABC 123",
              .customerName = "Ann",
              .customerPhone = "555"}),
      are(requestedCustomer(R"("name":"Ann","car_type":"Van","car_color":"Red",)"
                            R"("license_plate":"ABC 123","phone":"555",)"),
          requestedOrder(kNewToken, R"(,"customer_car_color":"Red","customer_car_type":"Van",)"
                                    R"("customer_license_plate":"ABC 123","customer_name":"Ann",)"
                                    R"("customer_phone":"555")"),
          accepted(kNewToken)));
  EXPECT_EQ(UserDefaultsKey::customerToken.stringValue(), kNewToken);
  Ovinta::customer().setCurrent(nullptr);
  EXPECT_THAT(create({.siteID = 42, .partnerIdentifier = "P", .customerName = "Ann"}),
              are(requestedCustomer(R"("name":"Ann","car_type":"","car_color":"",)"
                                    R"("license_plate":"",)"),
                  requestedOrder(kNewToken, R"(,"customer_name":"Ann")"), accepted(kNewToken)));
}

TEST_F(Create, FailsWithoutABaseURLAndWithoutACustomer) {
  const CreateOrderInfo nameless{.siteID = 42, .partnerIdentifier = "P"};
  const Steps noCustomer = refused(Title::orders, Message::noCustomer);
  const Item error = theError(Title::orders, Message::noCustomer);
  UserDefaultsKey::apiBase.remove();
  EXPECT_THAT(create(nameless), are(refused(Title::orders, Message::noURL)));
  time.advance(std::chrono::seconds(1));
  useBaseURL();
  EXPECT_THAT(create(nameless), are(noCustomer));
  EXPECT_EQ(lastFetch(), End(1, error));

  time.advance(std::chrono::seconds(1));
  answer("POST", "m/v1/customer", Answer::json(422, R"({"errors":{"name":["is missing"]}})"));
  EXPECT_THAT(create({.siteID = 42, .partnerIdentifier = "P", .customerName = ""}),
              are(requestedCustomer(R"("name":"","car_type":"","car_color":"",)"
                                    R"("license_plate":"",)"),
                  noCustomer));
  EXPECT_EQ(lastFetch(), End(2, error));
  EXPECT_EQ(Ovinta::customer().current(), nullptr);
}

TEST_F(Create, PassesTheServicesErrorOn) {
  signIn();
  answer("POST", "m/v1/orders", Answer::json(422, R"({"errors":{"site_id":["is unknown"]}})"));
  EXPECT_THAT(create({.siteID = 42, .partnerIdentifier = "P"}),
              are(logged(Line::creating), requestedOrder(kToken, ""),
                  told(theError(Title::createOrder, "is unknown"))));
  EXPECT_EQ(lastFetch(), std::nullopt);
}

}  // namespace
}  // namespace ovinta::test
