// The current customer: kept across restarts, come by in several ways, refused, forgotten.
#include "OvintaSDK/customer/CustomerManager.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

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

  /// A way to come by a customer.
  struct Way {
    const char* line;
    /// Whose token the request carries; empty for none.
    std::string token;
    std::string body;
    std::function<void(CustomerManager&, const CustomerCallback&)> go;
    /// Whether it needs a current customer.
    bool isForCurrent = false;
  };

  // Passwords that differ from their confirmation are the service's business.
  const std::vector<Way> ways{
      {"POST m/v1/customer", "",
       R"({"name":"Ann","phone":"555","terms_of_service":true,"age_verification":false})",
       [](auto& manager, const auto& keep) {
         manager.create({.name = "Ann", .phone = "555"}, true, false, keep);
       }},
      {"POST m/v1/customer", "", R"({"name":"","terms_of_service":false,"age_verification":true})",
       [](auto& manager, const auto& keep) {
         manager.create({.name = ""}, {.termsOfService = false, .ageVerification = true}, keep);
       }},
      {"PATCH m/v1/customer", "before", R"({"name":"Ann","car_type":"Van"})",
       [](auto& manager, const auto& keep) {
         manager.update({.name = "Ann", .carType = "Van"}, keep);
       },
       true},
      {"POST m/v1/customer/sign_in", "", R"({"email":"a@b","password":"secret"})",
       [](auto& manager, const auto& keep) { manager.login("a@b", "secret", keep); }},
      {"GET m/v1/customer", "of old", "",
       [](auto& manager, const auto& keep) { manager.loginWithToken("of old", keep); }},
      {"PATCH m/v1/customer/sign_up", "before",
       R"({"email":"a@b","password":"secret","password_confirmation":"secret"})",
       [](auto& manager, const auto& keep) { manager.signUp("a@b", "secret", keep); }, true},
      {"PATCH m/v1/customer/password", "",
       R"({"reset_password_token":"t","password":"one","confirmation":"other"})",
       [](auto& manager, const auto& keep) { manager.setNewPassword("t", "one", "other", keep); }},
  };

  void answerAll(const Answer& reply) {
    http->setService([reply](const auto&) { return reply; });
  }

  /// The customer before whatever a test does; in memory alone.
  static CustomerPtr makeBefore() {
    Ovinta::customer().setCurrent(
        std::make_shared<const Customer>(Customer{.token = "before", .info = {}}));
    return Ovinta::customer().current();
  }

  /// Expects the one outcome to be this refusal, inside the call.
  void expectRefusal(CustomerManagerErrorType type, std::string_view message) {
    ASSERT_EQ(outcomes.size(), 1u);
    const auto [customer, error] = std::exchange(outcomes, {})[0];
    EXPECT_EQ(customer, nullptr);
    const auto* refusal = dynamic_cast<const CustomerManagerError*>(error.get());
    ASSERT_NE(refusal, nullptr);
    EXPECT_EQ(refusal->type(), type);
    EXPECT_EQ(logLines().back(), message);
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

TEST_F(CustomerManagerTest, KeepsTheCustomerThatComesBack) {
  answerAll(dataAnswer(test::customerRecord()));
  for (const Way& way : ways) {
    SCOPED_TRACE(way.line);
    const CustomerPtr before = makeBefore();
    UserDefaultsKey::customerToken.remove();
    way.go(Ovinta::customer(), keep());
    EXPECT_EQ(Ovinta::customer().current(), before) << "not before the answer";
    drain();
    const auto request = requests().back();
    EXPECT_EQ(requestLines().back(), way.line);
    EXPECT_EQ(request.body.value_or(""), way.body.empty() ? "" : "{\"data\":" + way.body + "}");
    const platform::HeaderField token{"Authorization", "Token token=\"" + way.token + "\""};
    EXPECT_EQ(std::ranges::count(request.headers, token), !way.token.empty());
    EXPECT_EQ(std::ranges::count(request.headers, token.name, &platform::HeaderField::name),
              !way.token.empty());
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(*outcomes[0].first, test::customer());
    EXPECT_EQ(outcomes[0].second, nullptr);
    EXPECT_EQ(Ovinta::customer().current(), std::exchange(outcomes, {})[0].first);
    EXPECT_EQ(stored(), kAnn);
    EXPECT_EQ(*afterRestart(), test::customer());
  }
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(CustomerManagerTest, ChangesNothingWhenTheServiceRefuses) {
  store(kAnn);
  const CustomerPtr before = makeBefore();
  for (const Way& way : ways) {
    for (const auto& failure :
         {Answer::json(422, R"({"errors":{"name":["is missing"]}})"),
          Answer::json(200, R"({"data":{"name":"Bob"}})"), Answer::failure("The line is dead.")}) {
      answerAll(failure);
      way.go(Ovinta::customer(), keep());
      drain();
      ASSERT_EQ(outcomes.size(), 1u) << way.line;
      EXPECT_EQ(outcomes[0].first, nullptr);
      EXPECT_NE(std::exchange(outcomes, {})[0].second, nullptr);
      EXPECT_EQ(Ovinta::customer().current(), before);
      EXPECT_EQ(stored(), kAnn);
    }
  }
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(CustomerManagerTest, RefusesWithoutACustomerAndThenWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  for (const Way& way : ways) {
    SCOPED_TRACE(way.line);
    Ovinta::customer().setCurrent(nullptr);
    if (way.isForCurrent) {
      way.go(Ovinta::customer(), keep());
      expectRefusal(CustomerManagerErrorType::loadingCustomer, "Could not load customer");
      makeBefore();
    }
    way.go(Ovinta::customer(), keep());
    expectRefusal(CustomerManagerErrorType::loadingApiUrl, "Could not load API url");
    way.go(Ovinta::customer(), {});
  }
  EXPECT_EQ(logLines().size(), 2 * ways.size() + 2) << "also without a callback";
  drain();
  EXPECT_THAT(requests(), IsEmpty());
  EXPECT_THAT(postedNames(), IsEmpty());
}

TEST_F(CustomerManagerTest, AsksForANewPassword) {
  const CustomerPtr before = makeBefore();
  std::vector<std::string> errors;
  const auto ask = [&] {
    Ovinta::customer().requestNewPassword("a@b", [&](const ErrorPtr& error) {
      errors.push_back(error ? error->localizedDescription() : "none");
    });
  };
  for (const auto& reply : {Answer::json(202, ""), Answer::json(422, "")}) {
    answerAll(reply);
    ask();
    drain();
  }
  UserDefaultsKey::apiBase.remove();
  ask();
  Ovinta::customer().requestNewPassword("a@b");
  EXPECT_THAT(errors, ElementsAre("none", "Error processing input", "Could not load API url"));
  EXPECT_THAT(logLines(), ElementsAre("Could not load API url", "Could not load API url"));
  EXPECT_THAT(bodies("POST", "m/v1/customer/password"),
              ElementsAre(R"({"data":{"email":"a@b"}})", R"({"data":{"email":"a@b"}})"));
  EXPECT_EQ(Ovinta::customer().current(), before);
  EXPECT_EQ(afterRestart(), nullptr);
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
