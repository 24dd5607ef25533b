// The current customer: kept across restarts, created, refused, forgotten.
#include "OvintaSDK/customer/CustomerManager.h"

#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using test::with;
using test::without;
using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::map<std::string, std::optional<std::string>>;

const Texts kAnn{{"Customer Token", "customer-token"},
                 {"Customer Email", "ann@example.org"},
                 {"Customer Name", "Ann"},
                 {"Customer Vehicle Type", "Van"},
                 {"Customer Vehicle Color", "Red"},
                 {"Customer License Plate", "ABC 123"},
                 {"Customer Phone", "555"}};

class CustomerManagerTest : public test::SDKFixture {
 protected:
  static void store(const Texts& texts) {
    for (const auto& [key, text] : texts) UserDefaultsKey::fromRawValue(key)->set(text);
  }

  static Texts stored() {
    Texts texts;
    for (const auto& [key, text] : kAnn) {
      texts[key] = UserDefaultsKey::fromRawValue(key)->stringValue();
    }
    return texts;
  }

  /// The customer that an application finds which starts now.
  static CustomerPtr afterRestart() { return CustomerManager().current(); }

  CustomerCallback keep() {
    return
        [this](const auto& customer, const auto& error) { outcomes.emplace_back(customer, error); };
  }

  std::vector<std::pair<CustomerPtr, ErrorPtr>> outcomes;
};

TEST_F(CustomerManagerTest, LoadsACustomerWhoseFiveRequiredTextsAreStored) {
  EXPECT_EQ(afterRestart(), nullptr);
  const std::set<std::string> optional{"Customer Email", "Customer Phone"};
  for (const auto& [key, text] : kAnn) {
    for (const auto& value : {std::optional<std::string>(), std::optional<std::string>("")}) {
      SCOPED_TRACE(key + (value ? " empty" : " missing"));
      store(kAnn);
      store({{key, value}});
      const CustomerPtr loaded = afterRestart();
      const bool mayLack = optional.contains(key);
      ASSERT_EQ(loaded != nullptr, mayLack || value);
      if (!loaded) continue;
      Customer expected = test::customer();
      if (key == "Customer Token") expected.token = "";
      if (key == "Customer Email") expected.emailAddress.reset();
      if (key == "Customer Name") expected.info.name = "";
      if (key == "Customer Vehicle Type") expected.info.carType = "";
      if (key == "Customer Vehicle Color") expected.info.carColor = "";
      if (key == "Customer License Plate") expected.info.licensePlate = "";
      if (key == "Customer Phone") expected.info.phone.reset();
      EXPECT_EQ(*loaded, expected);
    }
  }
  store(kAnn);
  EXPECT_EQ(*afterRestart(), test::customer());
}

TEST_F(CustomerManagerTest, KeepsACreatedCustomer) {
  answer("POST", "m/v1/customer", dataAnswer(test::customerRecord()));
  Ovinta::customer().create({.name = "Ann", .phone = "555"}, true, false, keep());
  EXPECT_EQ(Ovinta::customer().current(), nullptr) << "not before the answer";
  drain();
  EXPECT_THAT(bodies("POST", "m/v1/customer"),
              ElementsAre(R"({"data":{"name":"Ann","phone":"555","terms_of_service":true,)"
                          R"("age_verification":false}})"));
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(*outcomes[0].first, test::customer());
  EXPECT_EQ(outcomes[0].second, nullptr);
  EXPECT_EQ(Ovinta::customer().current(), outcomes[0].first);
  EXPECT_EQ(stored(), kAnn);
  EXPECT_EQ(*afterRestart(), test::customer());
}

TEST_F(CustomerManagerTest, RemovesWhatANewCustomerDoesNotHave) {
  store(kAnn);
  platform::Dictionary record = with(test::customerRecord(), {{"api_token", "other"}});
  for (const char* key : {"email", "phone", "car_type"}) record = without(record, key);
  answer("POST", "m/v1/customer", dataAnswer(record));
  Ovinta::customer().create({.name = "Ann"}, {.termsOfService = true, .ageVerification = true});
  drain();
  Texts expected = kAnn;
  expected["Customer Token"] = "other";
  for (const char* key : {"Customer Email", "Customer Phone", "Customer Vehicle Type"}) {
    expected[key].reset();
  }
  EXPECT_EQ(stored(), expected);
  EXPECT_EQ(Ovinta::customer().current()->token, "other");
}

TEST_F(CustomerManagerTest, ChangesNothingWhenTheServiceRefuses) {
  store(kAnn);
  const CustomerPtr before = Ovinta::customer().current();
  for (const auto& failure :
       {Answer::json(422, R"({"errors":{"name":["is missing"]}})"),
        Answer::json(200, R"({"data":{"name":"Bob"}})"), Answer::failure("The line is dead.")}) {
    outcomes.clear();
    answer("POST", "m/v1/customer", failure);
    Ovinta::customer().create({.name = "Bob"}, true, true, keep());
    drain();
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(outcomes[0].first, nullptr);
    EXPECT_NE(outcomes[0].second, nullptr);
    EXPECT_EQ(Ovinta::customer().current(), before);
    EXPECT_EQ(stored(), kAnn);
  }
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(CustomerManagerTest, RefusesToCreateWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  Ovinta::customer().create({.name = "Ann"}, true, true, keep());
  ASSERT_EQ(outcomes.size(), 1u) << "inside the call";
  EXPECT_EQ(outcomes[0].first, nullptr);
  const auto* error = dynamic_cast<const CustomerManagerError*>(outcomes[0].second.get());
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(error->type(), CustomerManagerErrorType::loadingApiUrl);
  EXPECT_THAT(logLines(), ElementsAre("Could not load API url"));
  Ovinta::customer().create({.name = "Ann"}, true, true);
  drain();
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(CustomerManagerTest, ForgetsTheTokenAloneAtLogout) {
  for (void (CustomerManager::*leave)() : {&CustomerManager::logout, &CustomerManager::signOut}) {
    store(kAnn);
    CustomerManager manager;
    ASSERT_NE(manager.current(), nullptr);
    (manager.*leave)();
    EXPECT_EQ(manager.current(), nullptr);
    Texts expected = kAnn;
    expected["Customer Token"].reset();
    EXPECT_EQ(stored(), expected);
    EXPECT_EQ(afterRestart(), nullptr);
  }
}

TEST_F(CustomerManagerTest, KeepsWhatTheApplicationSetsInMemoryAlone) {
  signIn();
  EXPECT_EQ(afterRestart(), nullptr);
  Ovinta::customer().setCurrent(nullptr);
  EXPECT_EQ(Ovinta::customer().current(), nullptr);
}

}  // namespace
}  // namespace ovinta
