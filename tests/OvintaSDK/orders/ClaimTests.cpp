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

  Steps claim(const ClaimOrderInfo& info, std::optional<CustomerConsent> consent = {},
              std::initializer_list<Step::Kind> kinds = {}) {
    orders.claimWithRedemptionCode("CODE", info, consent, tell());
    return outcome(kinds);
  }

  static Step requestedClaim(const std::string& token, const std::string& details) {
    return requested("PUT", "m/v1/orders/CODE", token, "{" + details + "}");
  }

  /// What a claim with these details in its request comes to.
  static Steps claimed(const std::string& token, const std::string& details) {
    return {requestedClaim(token, details), told(theOrder(7)),
            reportedPermission(7, "authorized_always", token), logged(Line::eventAccepted)};
  }

  const Step claiming = logged(Line::claiming("CODE"));
  const Steps noURL = refused(Title::orders, Message::noURL);
  const Steps noCustomer = refused(Title::orders, Message::noCustomer);
  const CustomerInfo ann{.name = "Ann", .carType = "Van"};
};

TEST_F(Claim, LooksAnOrderUp) {
  const Step lookedUp = requested("GET", "m/v1/orders/CODE/edit");
  orders.fetchWithRedemptionCode("CODE", tell());
  EXPECT_THAT(outcome(), are(logged(Line::lookingUp), lookedUp, told(theOrder(7))));
  answer("GET", "m/v1/orders/CODE/edit", Answer::json(404, ""));
  orders.fetchWithRedemptionCode("CODE", tell());
  EXPECT_THAT(outcome(), are(logged(Line::lookingUp), lookedUp, logged(Line::notLookedUp),
                             told(theError(Title::lookUp, Message::notFound))));
  EXPECT_EQ(lists(), noLists);
  EXPECT_EQ(lastFetch(), std::nullopt);

  UserDefaultsKey::apiBase.remove();
  orders.fetchWithRedemptionCode("CODE", tell());
  const Item error = theError(Title::orders, Message::noURL);
  EXPECT_THAT(happened(), are(noURL, posted(SDKNotification::ordersError, error)));
  EXPECT_EQ(lastFetch(), End(0, error));
}

TEST_F(Claim, SendsTheDetailsAndThenThePermission) {
  signIn();
  const std::string details = R"("customer_car_type":"Van","customer_name":"Ann","push_token":)";
  orders.claimWithRedemptionCode("CODE", ann, tell());
  EXPECT_THAT(outcome(), are(claiming, claimed(kToken, details + "null")));
  Ovinta::setPushToken("device");
  orders.claimWithRedemptionCode("CODE", ann, "in_store", tell());
  EXPECT_THAT(outcome(),
              are(claiming, claimed(kToken, details + R"("device","pickup_type":"in_store")")));
  EXPECT_THAT(claim({.customerPhone = "555", .pushToken = "given"}),
              are(claiming, claimed(kToken, R"("customer_phone":"555","push_token":"given")")));
  EXPECT_EQ(lists(), noLists);
  EXPECT_EQ(lastFetch(), std::nullopt);
}

TEST_F(Claim, CreatesTheCustomerFirstWithTheGivenConsent) {
  EXPECT_THAT(claim({.customerName = "Ann", .pushToken = "given"},
                    CustomerConsent{.termsOfService = true, .ageVerification = false}),
              are(claiming,
                  requested("POST", "m/v1/customer", "",
                            R"({"name":"Ann","car_type":"","car_color":"",)"
                            R"("license_plate":"","terms_of_service":true,)"
                            R"("age_verification":false})"),
                  claimed(kNewToken, R"("customer_name":"Ann","push_token":"given")")));
  EXPECT_EQ(Ovinta::customer().current()->token, kNewToken);
}

TEST_F(Claim, IsRefusedForWhatIsMissing) {
  const ClaimOrderInfo named{.customerName = "Ann", .pushToken = "given"};
  EXPECT_THAT(claim({.pushToken = ""}), are(claiming, noCustomer))
      << "no name; asked before the consent";
  EXPECT_THAT(claim(named), are(claiming, refused(Title::customers, Message::noConsent)));
  orders.claimWithRedemptionCode("CODE", ann, tell());
  EXPECT_THAT(happened(), are(claiming, noCustomer)) << "details alone create no customer";
  answer("POST", "m/v1/customer", Answer::json(422, ""));
  EXPECT_THAT(claim(named, CustomerConsent{}, {Step::logged, Step::told}),
              are(claiming, noCustomer))
      << "not the service's reason";

  UserDefaultsKey::apiBase.remove();
  EXPECT_THAT(claim(named, CustomerConsent{}), are(noURL));
  EXPECT_EQ(lastFetch(), std::nullopt);
  orders.claimWithRedemptionCode("CODE", ann, tell());
  EXPECT_THAT(happened(), are(noURL));
  EXPECT_EQ(lastFetch(), End(0, theError(Title::orders, Message::noURL)));
}

TEST_F(Claim, PassesTheServicesErrorOn) {
  signIn();
  answer("PUT", "m/v1/orders/CODE", Answer::json(404, ""));
  EXPECT_THAT(claim({.pushToken = ""}), are(claiming, requestedClaim(kToken, R"("push_token":"")"),
                                            logged(Line::notClaimed("CODE")),
                                            told(theError(Title::claimOrder, Message::notFound))));
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
  EXPECT_THAT(logLines(), testing::Contains(Line::gettingOrders));
  EXPECT_THAT(logLines(), testing::Each(testing::Not(testing::HasSubstr(own))));
}

}  // namespace
}  // namespace ovinta::test
