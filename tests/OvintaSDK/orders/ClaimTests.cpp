// Looking orders up by their redemption codes, and claiming them.
#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using platform::HeaderField;
using test::requiredOrder;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kClaiming = "Claiming order using redemption code CODE";
constexpr const char* kNoURL = "Could not load API url";
constexpr const char* kNoCustomer = "Could not load customer";

class Claim : public test::SDKFixture {
 protected:
  Claim() {
    answer("GET", "m/v1/orders/CODE/edit", dataAnswer(requiredOrder(7)));
    answer("PUT", "m/v1/orders/CODE", dataAnswer(requiredOrder(7)));
    answer("POST", "m/v1/events", Answer::json(200, ""));
    answer("POST", "m/v1/customer",
           dataAnswer(test::with(test::customerRecord(), {{"api_token", "new-token"}})));
  }

  OrderCallback keep() {
    return [this](const auto& order, const auto& error) { outcomes.emplace_back(order, error); };
  }

  /// Claims with a claim's details.
  void claim(const ClaimOrderInfo& info, std::optional<CustomerConsent> consent = {}) {
    orders.claimWithRedemptionCode("CODE", info, consent, keep());
    drain();
  }

  /// The message of the only outcome, which must be an error.
  std::string refusal() {
    if (outcomes.size() != 1 || outcomes[0].first || !outcomes[0].second) return "no refusal";
    return std::exchange(outcomes, {})[0].second->localizedDescription();
  }

  const CustomerInfo ann{.name = "Ann", .carType = "Van"};
  OrdersManager& orders = Ovinta::orders();
  std::vector<std::pair<OrderPtr, ErrorPtr>> outcomes;
};

TEST_F(Claim, LooksAnOrderUp) {
  orders.fetchWithRedemptionCode("CODE", keep());
  drain();
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].first->id, 7);
  EXPECT_EQ(std::exchange(outcomes, {})[0].second, nullptr);
  answer("GET", "m/v1/orders/CODE/edit", Answer::json(404, ""));
  orders.fetchWithRedemptionCode("CODE", keep());
  drain();
  EXPECT_EQ(refusal(), "Not found");
  EXPECT_THAT(logLines(), ElementsAre("Getting order using redemption code",
                                      "Getting order using redemption code",
                                      "Got an error getting order with redemption code"));
  EXPECT_THAT(postedNames(), IsEmpty());
  EXPECT_FALSE(orders.lastFetch() || orders.all());

  UserDefaultsKey::apiBase.remove();
  orders.fetchWithRedemptionCode("CODE", keep());
  const ErrorPtr error = outcomes.at(0).second;
  EXPECT_EQ(refusal(), kNoURL) << "inside the call";
  EXPECT_EQ(logLines().back(), kNoURL);
  EXPECT_EQ(orders.lastFetch()->error, error);
  EXPECT_THAT(postedNames(), ElementsAre("ordersError"));
  EXPECT_EQ(*posted(SDKNotification::ordersError)[0].objectAs<ErrorPtr>(), error);
}

TEST_F(Claim, SendsTheDetailsAndThenThePermission) {
  signIn();
  orders.claimWithRedemptionCode("CODE", ann, keep());
  drain();
  Ovinta::setPushToken("device");
  orders.claimWithRedemptionCode("CODE", ann, "in_store", keep());
  drain();
  claim({.customerPhone = "555", .pushToken = "given"});
  EXPECT_THAT(
      bodies("PUT", "m/v1/orders/CODE"),
      ElementsAre(R"({"data":{"customer_car_type":"Van","customer_name":"Ann","push_token":null}})",
                  R"({"data":{"customer_car_type":"Van","customer_name":"Ann",)"
                  R"("push_token":"device","pickup_type":"in_store"}})",
                  R"({"data":{"customer_phone":"555","push_token":"given"}})"));
  EXPECT_THAT(bodies("POST", "m/v1/events"),
              Contains(R"({"data":{"order_id":7,"event_type":"permission_update",)"
                       R"("location_permission":"authorized_always"}})")
                  .Times(3));
  EXPECT_THAT(requests()[0].headers,
              Contains(HeaderField{"Authorization", R"(Token token="customer-token")"}));
  EXPECT_EQ(outcomes.size(), 3u);
  for (const auto& [order, error] : outcomes) EXPECT_TRUE(order && order->id == 7 && !error);
  EXPECT_THAT(logLines(), Contains(kClaiming).Times(3));
  EXPECT_FALSE(orders.all() || orders.lastFetch());
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(Claim, CreatesTheCustomerFirstWithTheGivenConsent) {
  claim({.customerName = "Ann"}, CustomerConsent{.termsOfService = true, .ageVerification = false});
  EXPECT_THAT(requestLines(),
              ElementsAre("POST m/v1/customer", "PUT m/v1/orders/CODE", "POST m/v1/events"));
  EXPECT_THAT(
      bodies("POST", "m/v1/customer"),
      ElementsAre(R"({"data":{"name":"Ann","car_type":"","car_color":"",)"
                  R"("license_plate":"","terms_of_service":true,"age_verification":false}})"));
  EXPECT_THAT(requests().at(1).headers,
              Contains(HeaderField{"Authorization", R"(Token token="new-token")"}));
  EXPECT_EQ(Ovinta::customer().current()->token, "new-token");
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].first->id, 7);
}

TEST_F(Claim, IsRefusedForWhatIsMissing) {
  claim({});
  EXPECT_EQ(refusal(), kNoCustomer) << "no name; asked before the consent";
  claim({.customerName = "Ann"});
  EXPECT_NE(dynamic_cast<const CustomerManagerError*>(outcomes.at(0).second.get()), nullptr);
  EXPECT_EQ(refusal(), "Missing customer consent");
  orders.claimWithRedemptionCode("CODE", ann, keep());
  EXPECT_EQ(refusal(), kNoCustomer) << "details alone create no customer";
  EXPECT_THAT(logLines(), ElementsAre(kClaiming, kNoCustomer, kClaiming, "Missing customer consent",
                                      kClaiming, kNoCustomer));
  EXPECT_THAT(requests(), IsEmpty());
  answer("POST", "m/v1/customer", Answer::json(422, ""));
  claim({.customerName = "Ann"}, CustomerConsent{});
  EXPECT_EQ(refusal(), kNoCustomer) << "not the service's reason";

  UserDefaultsKey::apiBase.remove();
  claim({.customerName = "Ann"}, CustomerConsent{});
  EXPECT_EQ(refusal(), kNoURL);
  EXPECT_FALSE(orders.lastFetch());
  orders.claimWithRedemptionCode("CODE", ann, keep());
  EXPECT_EQ(orders.lastFetch()->error, outcomes.at(0).second);
  EXPECT_EQ(refusal(), kNoURL);
  EXPECT_THAT(logLines(), Contains(kClaiming).Times(4)) << "not before the base URL is known";
  EXPECT_THAT(requestLines(), ElementsAre("POST m/v1/customer"));
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(Claim, PassesTheServicesErrorOn) {
  signIn();
  answer("PUT", "m/v1/orders/CODE", Answer::json(404, ""));
  claim({});
  EXPECT_EQ(refusal(), "Not found");
  EXPECT_EQ(logLines().back(), "Got an error claiming order with redemption code CODE");
  EXPECT_THAT(requestLines(), ElementsAre("PUT m/v1/orders/CODE")) << "no event";
}

}  // namespace
}  // namespace ovinta
