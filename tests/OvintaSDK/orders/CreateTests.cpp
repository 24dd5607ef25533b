// Creating orders, for a customer that is there and for one that is created along the way.
#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using platform::HeaderField;
using test::requiredOrder;
using test::with;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Create : public test::SDKFixture {
 protected:
  Create() {
    answer("POST", "m/v1/orders", dataAnswer(requiredOrder(7)));
    answer("POST", "m/v1/events", Answer::json(200, ""));
  }

  OrderCallback keep() {
    return [this](const auto& order, const auto& error) { outcomes.emplace_back(order, error); };
  }

  std::vector<std::pair<OrderPtr, ErrorPtr>> outcomes;
};

TEST_F(Create, SendsTheOrderAndThenThePermission) {
  signIn();
  Ovinta::orders().create({.siteID = 42, .partnerIdentifier = "P", .state = OrderState::ready},
                          keep());
  EXPECT_THAT(logLines(), ElementsAre("Creating order for existing customer"));
  drain();
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].first->id, 7);
  EXPECT_EQ(outcomes[0].second, nullptr);
  EXPECT_THAT(bodies("POST", "m/v1/orders"),
              ElementsAre(R"({"data":{"site_id":42,"partner_identifier":"P","state":"ready"}})"));
  EXPECT_THAT(requestLines(), ElementsAre("POST m/v1/orders", "POST m/v1/events"));
  for (const auto& request : requests()) {
    EXPECT_THAT(request.headers,
                Contains(HeaderField{"Authorization", R"(Token token="customer-token")"}));
  }
  EXPECT_FALSE(Ovinta::orders().all() || Ovinta::orders().open() || Ovinta::orders().lastFetch());
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(Create, ReportsTheKnownPermissions) {
  const std::pair<platform::AuthorizationStatus, const char*> permissions[] = {
      {0, "not_determined"},         {1, "restricted"}, {2, "denied"}, {3, "authorized_always"},
      {4, "authorized_when_in_use"}, {5, nullptr}};
  signIn();
  std::vector<std::string> events;
  for (const auto& [status, text] : permissions) {
    location->setAuthorizationStatus(status);
    Ovinta::orders().create({.siteID = 42, .partnerIdentifier = "P"}, keep());
    drain();
    if (!text) continue;
    events.push_back(R"({"data":{"order_id":7,"event_type":"permission_update",)"
                     R"("location_permission":")" +
                     std::string(text) + "\"}}");
  }
  EXPECT_EQ(bodies("POST", "m/v1/events"), events);
  EXPECT_EQ(outcomes.size(), std::size(permissions));
}

TEST_F(Create, TakesTheOrderFromSingleValues) {
  signIn();
  Ovinta::setPushToken("device");
  const PickupWindow window(test::kStart);
  const CustomerInfo ann{.name = "Ann", .carType = "Van", .phone = "555"};
  Ovinta::orders().create(42, "P", ann, window, OrderState::delayed);
  Ovinta::orders().create(42, "P", ann, std::nullopt);
  drain();
  const std::string common =
      R"({"data":{"site_id":42,"partner_identifier":"P","customer_car_type":"Van",)"
      R"("customer_name":"Ann","customer_phone":"555","push_token":"device")";
  EXPECT_THAT(
      bodies("POST", "m/v1/orders"),
      ElementsAre(common + R"(,"state":"delayed","pickup_window":"2021-03-04T15:30:00.000-0500/)"
                           R"(2021-03-04T15:30:00.000-0500"}})",
                  common + "}}"));
}

TEST_F(Create, CreatesTheCustomerFirst) {
  answer("POST", "m/v1/customer",
         dataAnswer(with(test::customerRecord(), {{"api_token", "new-token"}})));
  Ovinta::orders().create({.siteID = 42, .partnerIdentifier = "P", .customerName = "Ann"}, keep());
  drain();
  EXPECT_THAT(requestLines(),
              ElementsAre("POST m/v1/customer", "POST m/v1/orders", "POST m/v1/events"));
  EXPECT_THAT(bodies("POST", "m/v1/customer"),
              ElementsAre(R"({"data":{"name":"Ann","car_type":"","car_color":"",)"
                          R"("license_plate":"","terms_of_service":true,)"
                          R"("age_verification":true}})"));
  EXPECT_THAT(requests()[1].headers,
              Contains(HeaderField{"Authorization", R"(Token token="new-token")"}));
  EXPECT_EQ(Ovinta::customer().current()->token, "new-token");
  EXPECT_EQ(UserDefaultsKey::customerToken.stringValue(), "new-token");
  EXPECT_THAT(logLines(), Not(Contains("Creating order for existing customer")));
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].first->id, 7);
}

TEST_F(Create, HandsTheDetailsOnToTheCustomer) {
  Ovinta::orders().create({.siteID = 42,
                           .partnerIdentifier = "P",
                           .customerCarColor = "Red",
                           .customerCarType = "Van",
                           .customerLicensePlate = "ABC 123",
                           .customerName = "Ann",
                           .customerPhone = "555"});
  drain();
  EXPECT_THAT(bodies("POST", "m/v1/customer"),
              ElementsAre(R"({"data":{"name":"Ann","car_type":"Van","car_color":"Red",)"
                          R"("license_plate":"ABC 123","phone":"555","terms_of_service":true,)"
                          R"("age_verification":true}})"));
}

TEST_F(Create, FailsWithoutABaseURLAndWithoutACustomer) {
  const auto expectRefusal = [this](const CreateOrderInfo& info, OrdersManagerErrorType type,
                                    std::string_view message) {
    outcomes.clear();
    time.advance(std::chrono::seconds(1));
    Ovinta::orders().create(info, keep());
    drain();
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(outcomes[0].first, nullptr);
    const auto* error = dynamic_cast<const OrdersManagerError*>(outcomes[0].second.get());
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->type(), type);
    EXPECT_EQ(logLines().back(), message);
    EXPECT_EQ(Ovinta::orders().lastFetch()->error.get(), error);
    EXPECT_EQ(Ovinta::orders().lastFetch()->date, time.now());
    EXPECT_THAT(postedNames(), IsEmpty());
  };
  const CreateOrderInfo nameless{.siteID = 42, .partnerIdentifier = "P"};
  const CreateOrderInfo named{.siteID = 42, .partnerIdentifier = "P", .customerName = ""};

  UserDefaultsKey::apiBase.remove();
  expectRefusal(nameless, OrdersManagerErrorType::loadingApiUrl, "Could not load API url");
  UserDefaultsKey::apiBase.set(std::string(test::kBaseURL));
  expectRefusal(nameless, OrdersManagerErrorType::loadingCustomer, "Could not load customer");
  EXPECT_THAT(requests(), IsEmpty());

  answer("POST", "m/v1/customer", Answer::json(422, R"({"errors":{"name":["is missing"]}})"));
  expectRefusal(named, OrdersManagerErrorType::loadingCustomer, "Could not load customer");
  EXPECT_THAT(requestLines(), ElementsAre("POST m/v1/customer"));
  EXPECT_EQ(Ovinta::customer().current(), nullptr);
}

TEST_F(Create, PassesTheServicesErrorOn) {
  signIn();
  answer("POST", "m/v1/orders", Answer::json(422, R"({"errors":{"site_id":["is unknown"]}})"));
  Ovinta::orders().create({.siteID = 42, .partnerIdentifier = "P"}, keep());
  drain();
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].first, nullptr);
  EXPECT_NE(outcomes[0].second, nullptr);
  EXPECT_FALSE(Ovinta::orders().lastFetch());
  EXPECT_THAT(requestLines(), ElementsAre("POST m/v1/orders")) << "no event";
}

}  // namespace
}  // namespace ovinta
