// The current customer: kept across restarts, come by in several ways, refused, forgotten.
#include "OvintaSDK/customer/CustomerManager.h"

#include <gmock/gmock.h>

#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/portable/InMemorySettingsStore.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using Texts = std::map<std::string, std::optional<std::string>>;

const Texts kAnn{{"Customer Token", "customer-token"},
                 {"Customer Email", "ann@example.org"},
                 {"Customer Name", "Ann"},
                 {"Customer Vehicle Type", "Van"},
                 {"Customer Vehicle Color", "Red"},
                 {"Customer License Plate", "ABC 123"},
                 {"Customer Phone", "555"}};

constexpr const char* kCustomer = "m/v1/customer";

Texts annWithout(std::initializer_list<const char*> keys) {
  Texts texts = kAnn;
  for (const char* key : keys) texts[key].reset();
  return texts;
}

/// Counts what is asked of the store beside what is read and written, and who is the current
/// customer meanwhile.
struct ObservedSettings : platform::portable::InMemorySettingsStore {
  void apply(const Changes& changes) override {
    customersAtSaving.push_back(Ovinta::customer().current());
    InMemorySettingsStore::apply(changes);
  }
  void wipe(std::string_view key) override {
    wiped.emplace_back(key);
    InMemorySettingsStore::wipe(key);
  }

  std::vector<CustomerPtr> customersAtSaving;
  std::vector<std::string> wiped;
};

class CustomerManagerTest : public SDKFixture {
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

  /// A way to come by a customer.
  struct Way {
    Step request;
    const char* title;
    std::function<void(CustomerManager&, const CustomerCallback&)> go;
    /// Whether it needs a current customer.
    bool isForCurrent = false;
  };

  // Passwords that differ from their confirmation are the service's business.
  const std::vector<Way> ways{
      {requested("POST", kCustomer, "",
                 R"({"name":"Ann","phone":"555","terms_of_service":true,)"
                 R"("age_verification":false})"),
       Title::createCustomer,
       [](auto& manager, const auto& tell) {
         manager.create({.name = "Ann", .phone = "555"}, true, false, tell);
       }},
      {requested("POST", kCustomer, "",
                 R"({"name":"","terms_of_service":false,"age_verification":true})"),
       Title::createCustomer,
       [](auto& manager, const auto& tell) {
         manager.create({.name = ""}, {.termsOfService = false, .ageVerification = true}, tell);
       }},
      {requested("PATCH", kCustomer, "before", R"({"name":"Ann","car_type":"Van"})"),
       Title::updateCustomer,
       [](auto& manager, const auto& tell) {
         manager.update({.name = "Ann", .carType = "Van"}, tell);
       },
       true},
      {requested("POST", "m/v1/customer/sign_in", "", R"({"email":"a@b","password":"secret"})"),
       Title::signIn,
       [](auto& manager, const auto& tell) { manager.login("a@b", "secret", tell); }},
      {requested("GET", kCustomer, "of old"), Title::getCustomer,
       [](auto& manager, const auto& tell) { manager.loginWithToken("of old", tell); }},
      {requested("PATCH", "m/v1/customer/sign_up", "before",
                 R"({"email":"a@b","password":"secret","password_confirmation":"secret"})"),
       Title::signUp,
       [](auto& manager, const auto& tell) { manager.signUp("a@b", "secret", tell); }, true},
      {requested("PATCH", "m/v1/customer/password", "",
                 R"({"reset_password_token":"t","password":"one","confirmation":"other"})"),
       Title::signIn,
       [](auto& manager, const auto& tell) { manager.setNewPassword("t", "one", "other", tell); }},
  };

  /// What comes of going a way, from the call to the end.
  Steps go(const Way& way) {
    way.go(Ovinta::customer(), tell());
    return outcome();
  }

  /// The customer before whatever a test does; in memory alone.
  static CustomerPtr makeBefore() {
    Ovinta::customer().setCurrent(
        std::make_shared<const Customer>(Customer{.token = "before", .info = {}}));
    return Ovinta::customer().current();
  }
};

TEST_F(CustomerManagerTest, LoadsACustomerWhoseFiveRequiredTextsAreStored) {
  EXPECT_EQ(afterRestart(), nullptr);
  // With each text in turn missing, and then empty.
  const std::tuple<const char*, bool, std::function<void(Customer&)>> rows[] = {
      {"Customer Token", false, [](auto& customer) { customer.token = ""; }},
      {"Customer Email", true, [](auto& customer) { customer.emailAddress.reset(); }},
      {"Customer Name", false, [](auto& customer) { customer.info.name = ""; }},
      {"Customer Vehicle Type", false, [](auto& customer) { customer.info.carType = ""; }},
      {"Customer Vehicle Color", false, [](auto& customer) { customer.info.carColor = ""; }},
      {"Customer License Plate", false, [](auto& customer) { customer.info.licensePlate = ""; }},
      {"Customer Phone", true, [](auto& customer) { customer.info.phone.reset(); }}};
  for (const auto& [key, mayLack, change] : rows) {
    SCOPED_TRACE(key);
    Customer expected = customer();
    change(expected);
    store(annWithout({key}));
    const CustomerPtr withoutText = afterRestart();
    ASSERT_EQ(withoutText != nullptr, mayLack);
    if (withoutText) {
      EXPECT_EQ(*withoutText, expected);
    }
    store({{key, ""}});
    EXPECT_EQ(*afterRestart(), expected);
  }
}

TEST_F(CustomerManagerTest, KeepsTheCustomerThatComesBack) {
  answerAll(dataAnswer(customerRecord()));
  for (const Way& way : ways) {
    SCOPED_TRACE(testing::PrintToString(way.request));
    const CustomerPtr before = makeBefore();
    UserDefaultsKey::customerToken.remove();
    way.go(Ovinta::customer(), [this](const CustomerPtr& received, const ErrorPtr& error) {
      tell()(received, error);
      EXPECT_EQ(Ovinta::customer().current(), received) << "when the callback is called";
    });
    EXPECT_EQ(Ovinta::customer().current(), before) << "not before the answer";
    EXPECT_THAT(outcome(), are(way.request, told(theCustomer(kToken))));
    EXPECT_EQ(*Ovinta::customer().current(), customer());
    EXPECT_EQ(stored(), kAnn);
    EXPECT_EQ(*afterRestart(), customer());
  }
}

TEST_F(CustomerManagerTest, ChangesNothingWhenTheServiceRefuses) {
  store(kAnn);
  const CustomerPtr before = makeBefore();
  answerAll(Answer::json(422, R"({"errors":{"name":["is missing"]}})"));
  for (const Way& way : ways) {
    EXPECT_THAT(go(way), are(way.request, told(theError(way.title, "is missing"))));
    EXPECT_EQ(Ovinta::customer().current(), before);
    EXPECT_EQ(stored(), kAnn);
  }
}

TEST_F(CustomerManagerTest, RefusesWithoutACustomerAndThenWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  for (const Way& way : ways) {
    SCOPED_TRACE(testing::PrintToString(way.request));
    Ovinta::customer().setCurrent(nullptr);
    if (way.isForCurrent) {
      EXPECT_THAT(go(way), are(refused(Title::customers, Message::noCustomer)));
      makeBefore();
    }
    way.go(Ovinta::customer(), tell());
    way.go(Ovinta::customer(), {});
    EXPECT_THAT(happened(), are(refused(Title::customers, Message::noURL), logged(Message::noURL)))
        << "inside the call";
  }
}

TEST_F(CustomerManagerTest, AsksForANewPassword) {
  const CustomerPtr before = makeBefore();
  const auto ask = [this] {
    Ovinta::customer().requestNewPassword("a@b", tell());
    return outcome();
  };
  const Step request = requested("POST", "m/v1/customer/password", "", R"({"email":"a@b"})");
  answerAll(Answer::json(202, ""));
  EXPECT_THAT(ask(), are(request, told()));
  answerAll(Answer::json(422, ""));
  EXPECT_THAT(ask(), are(request, told(theError(Title::resetPassword, Message::unprocessable))));
  UserDefaultsKey::apiBase.remove();
  Ovinta::customer().requestNewPassword("a@b");
  EXPECT_THAT(ask(), are(logged(Message::noURL), refused(Title::customers, Message::noURL)));
  EXPECT_EQ(Ovinta::customer().current(), before);
  EXPECT_EQ(afterRestart(), nullptr) << "what the application sets is not stored";
}

TEST_F(CustomerManagerTest, RemovesWhatANewCustomerDoesNotHave) {
  store(kAnn);
  platform::Dictionary record = with(customerRecord(), {{"api_token", "other"}});
  for (const char* key : {"email", "phone", "car_type"}) record = without(record, key);
  answer("POST", "m/v1/customer", dataAnswer(record));
  Ovinta::customer().create({.name = "Ann"}, {.termsOfService = true, .ageVerification = true});
  drain();
  Texts expected = annWithout({"Customer Email", "Customer Phone", "Customer Vehicle Type"});
  expected["Customer Token"] = "other";
  EXPECT_EQ(stored(), expected);
}

TEST_F(CustomerManagerTest, AnEmptyAddressFromTheServiceIsKeptAndRegistersNobody) {
  answerAll(dataAnswer(with(customerRecord(), {{"email", ""}})));
  Ovinta::customer().loginWithToken("of old");
  drain();
  EXPECT_EQ(Ovinta::customer().current()->emailAddress, "");
  EXPECT_FALSE(Ovinta::customer().current()->registered());
  EXPECT_EQ(stored().at("Customer Email"), "");
  EXPECT_EQ(afterRestart()->emailAddress, std::nullopt);
}

TEST_F(CustomerManagerTest, SavesACustomerAsAWholeBeforeItIsTheCurrentOneAndWipesTheTokenAtLogout) {
  const auto settings = std::make_shared<ObservedSettings>();
  restartWith([&](platform::Services& changed) { changed.settings = settings; });
  UserDefaultsKey::apiBase.set(std::string(kBaseURL));
  answerAll(dataAnswer(customerRecord()));
  for (const CustomerPtr& before : {CustomerPtr(), makeBefore()}) {
    settings->customersAtSaving.clear();
    Ovinta::customer().setCurrent(before);
    Ovinta::customer().loginWithToken("of old");
    drain();
    EXPECT_THAT(settings->customersAtSaving, testing::ElementsAre(before));
    EXPECT_EQ(*Ovinta::customer().current(), customer());
  }
  Ovinta::customer().logout();
  EXPECT_THAT(settings->wiped, testing::ElementsAre("Customer Token"));
}

TEST_F(CustomerManagerTest, ForgetsTheTokenAloneAtLogout) {
  for (void (CustomerManager::*leave)() : {&CustomerManager::logout, &CustomerManager::signOut}) {
    store(kAnn);
    CustomerManager manager;
    ASSERT_NE(manager.current(), nullptr);
    (manager.*leave)();
    EXPECT_EQ(manager.current(), nullptr);
    EXPECT_EQ(stored(), annWithout({"Customer Token"}));
    EXPECT_EQ(afterRestart(), nullptr);
  }
}

}  // namespace
}  // namespace ovinta::test
