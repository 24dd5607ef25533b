// Looking orders up by their redemption codes, and claiming them.
#include <gmock/gmock.h>

#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta::test {
namespace {

class Claim : public OrdersFixture {
 protected:
  Claim() {
    answer("GET", "m/v1/orders/CODE/edit", dataAnswer(requiredOrder(7)));
    answer("PUT", "m/v1/orders/CODE", dataAnswer(requiredOrder(7)));
  }

  std::string claim(const ClaimOrderInfo& info, std::optional<CustomerConsent> consent = {}) {
    orders.claimWithRedemptionCode("CODE", info, consent, tell());
    return outcome();
  }

  /// What a claim with these details in its request comes to.
  static std::string claimed(const std::string& token, const std::string& details) {
    return "\nPUT m/v1/orders/CODE as " + token + " {" + details +
           "}\ntold order 7\nPOST m/v1/events as " + token +
           R"( {"order_id":7,"event_type":"permission_update",)"
           R"("location_permission":"authorized_always"})"
           "\nlog Successfully created order event";
  }

  const std::string claiming = "\nlog Claiming order using redemption code CODE";
  const std::string noURL =
      "\nlog Could not load API url\n"
      "told Error with Orders Manager: Could not load API url";
  const std::string noCustomer =
      "\nlog Could not load customer\n"
      "told Error with Orders Manager: Could not load customer";
  const CustomerInfo ann{.name = "Ann", .carType = "Van"};
};

TEST_F(Claim, LooksAnOrderUp) {
  orders.fetchWithRedemptionCode("CODE", tell());
  EXPECT_EQ(outcome(), R"(
log Getting order using redemption code
GET m/v1/orders/CODE/edit
told order 7)");
  answer("GET", "m/v1/orders/CODE/edit", Answer::json(404, ""));
  orders.fetchWithRedemptionCode("CODE", tell());
  EXPECT_EQ(outcome(), R"(
log Getting order using redemption code
GET m/v1/orders/CODE/edit
log Got an error getting order with redemption code
told Error Finding Redeem Code: Not found)");
  EXPECT_EQ(lists(), kNoLists);
  EXPECT_EQ(lastFetch(), "none");

  UserDefaultsKey::apiBase.remove();
  orders.fetchWithRedemptionCode("CODE", tell());
  EXPECT_EQ(happened(), R"(
log Could not load API url
told Error with Orders Manager: Could not load API url
posted ordersError Error with Orders Manager: Could not load API url)");
  EXPECT_EQ(lastFetch(), "0 s, Error with Orders Manager: Could not load API url");
}

TEST_F(Claim, SendsTheDetailsAndThenThePermission) {
  signIn();
  const std::string details = R"("customer_car_type":"Van","customer_name":"Ann","push_token":)";
  orders.claimWithRedemptionCode("CODE", ann, tell());
  EXPECT_EQ(outcome(), claiming + claimed("customer-token", details + "null"));
  Ovinta::setPushToken("device");
  orders.claimWithRedemptionCode("CODE", ann, "in_store", tell());
  EXPECT_EQ(outcome(),
            claiming + claimed("customer-token", details + R"("device","pickup_type":"in_store")"));
  EXPECT_EQ(claim({.customerPhone = "555", .pushToken = "given"}),
            claiming + claimed("customer-token", R"("customer_phone":"555","push_token":"given")"));
  EXPECT_EQ(lists(), kNoLists);
  EXPECT_EQ(lastFetch(), "none");
}

TEST_F(Claim, CreatesTheCustomerFirstWithTheGivenConsent) {
  EXPECT_EQ(claim({.customerName = "Ann", .pushToken = "given"},
                  CustomerConsent{.termsOfService = true, .ageVerification = false}),
            claiming +
                R"(
POST m/v1/customer {"name":"Ann","car_type":"","car_color":"","license_plate":"",)"
                R"("terms_of_service":true,"age_verification":false})" +
                claimed("new-token", R"("customer_name":"Ann","push_token":"given")"));
  EXPECT_EQ(Ovinta::customer().current()->token, "new-token");
}

TEST_F(Claim, IsRefusedForWhatIsMissing) {
  EXPECT_EQ(claim({.pushToken = ""}), claiming + noCustomer) << "no name; asked before the consent";
  EXPECT_EQ(claim({.customerName = "Ann", .pushToken = "given"}),
            claiming +
                "\nlog Missing customer consent\n"
                "told Error with Customer Manager: Missing customer consent");
  orders.claimWithRedemptionCode("CODE", ann, tell());
  EXPECT_EQ(happened(), claiming + noCustomer) << "details alone create no customer";
  answer("POST", "m/v1/customer", Answer::json(422, ""));
  EXPECT_THAT(claim({.customerName = "Ann", .pushToken = "given"}, CustomerConsent{}),
              testing::EndsWith(noCustomer))
      << "not the service's reason";

  UserDefaultsKey::apiBase.remove();
  EXPECT_EQ(claim({.customerName = "Ann", .pushToken = "given"}, CustomerConsent{}), noURL);
  EXPECT_EQ(lastFetch(), "none");
  orders.claimWithRedemptionCode("CODE", ann, tell());
  EXPECT_EQ(happened(), noURL);
  EXPECT_EQ(lastFetch(), "0 s, Error with Orders Manager: Could not load API url");
}

TEST_F(Claim, PassesTheServicesErrorOn) {
  signIn();
  answer("PUT", "m/v1/orders/CODE", Answer::json(404, ""));
  EXPECT_EQ(claim({.pushToken = ""}), claiming + R"(
PUT m/v1/orders/CODE as customer-token {"push_token":""}
log Got an error claiming order with redemption code CODE
told Error Claiming Order: Not found)");
}

TEST_F(Claim, AndAllElseLeavesNothingPersonalInTheLog) {
  const std::string own = "Ann";
  const CustomerInfo info{own, own, own, own, own};
  const Answer answers[] = {Answer::json(200, R"({"data":{"id":"Ann","api_token":5}})"),
                            Answer::json(200, "Ann"), Answer::json(422, R"({"error":"Ann"})"),
                            Answer::json(401, "Ann"), Answer::failure("Ann")};
  CustomerManager& customers = Ovinta::customer();
  for (const bool isSignedIn : {false, true}) {
    for (const Answer& each : answers) {
      answerAll(each);
      customers.setCurrent(
          isSignedIn ? std::make_shared<const Customer>(Customer{.token = own, .info = info})
                     : nullptr);
      Ovinta::setPushToken(own);
      orders.setOpen(OrderList{decodeOrder(with(requiredOrder(), {{"redemption_code", "CODE"}}))});
      orders.fetch();
      orders.create(42, "P", info, std::nullopt);
      orders.claimWithRedemptionCode("CODE", info);
      orders.rateOrder(7, 5, own);
      customers.update(info);
      customers.login(own, own);
      customers.loginWithToken(own);
      customers.signUp(own, own);
      customers.requestNewPassword(own);
      customers.setNewPassword(own, own, own);
      drain();
    }
  }
  EXPECT_THAT(logLines(), testing::Contains("Getting Orders"));
  EXPECT_THAT(logLines(), testing::Each(testing::Not(testing::HasSubstr(own))));
}

}  // namespace
}  // namespace ovinta::test
