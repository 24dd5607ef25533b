#include "OvintaSDK/core/facade/Ovinta.h"

#include <gmock/gmock.h>

#include <atomic>
#include <set>
#include <thread>

#include "OvintaSDK/core/DevelopmentPush.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/ConfigurationManager.h"
#include "OvintaSDK/core/facade/Library.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

/// Notes of each location manager whether it is made on the main thread.
class NotingLocation : public platform::simulation::SimulatedLocation {
 public:
  using SimulatedLocation::SimulatedLocation;
  std::unique_ptr<platform::LocationManager> makeLocationManager() override {
    madeOnMain.push_back(platform::services().mainQueue->isMain());
    return SimulatedLocation::makeLocationManager();
  }
  std::vector<bool> madeOnMain;
};

class OvintaTest : public SDKFixture {
 protected:
  OvintaTest() {
    locationServices = std::make_shared<NotingLocation>(services.mainQueue, services.geodesy);
    restartWith([this](platform::Services& changed) { changed.location = locationServices; });
  }

  std::shared_ptr<NotingLocation> locationServices;
};

TEST_F(OvintaTest, ConfigureTakesOnlyATextAsToken) {
  using Token = std::optional<std::string>;
  const std::pair<platform::Dictionary, Token> cases[] = {
      {{}, {}},
      {{{"token", 42}}, {}},
      {{{"token", "first"}, {"Token", "other"}}, "first"},
      {{{"token", nullptr}}, "first"},
      {{{"token", ""}}, ""},
      {{{"token", "second"}}, "second"},
  };
  for (const auto& [options, token] : cases) {
    Ovinta::configure(options);
    EXPECT_EQ(Library::process().context()->appToken.get(), token);
  }
  EXPECT_THAT(locationServices->madeOnMain, testing::ElementsAre(true));
  EXPECT_TRUE(device->isBatteryMonitoringEnabled());
}

TEST_F(OvintaTest, ConfigureRegistersADefaultBaseURL) {
  Ovinta::configure({});
  EXPECT_EQ(UserDefaultsKey::apiBase.stringValue(), kBaseURL);
  UserDefaultsKey::apiBase.remove();
  EXPECT_THAT(UserDefaultsKey::apiBase.stringValue().value_or(""), testing::StartsWith("https://"));
}

TEST_F(OvintaTest, ConfigureHasTheMainThreadMakeTheUpdater) {
  EXPECT_EQ(Library::process().locationUpdater(), nullptr);
  std::atomic<bool> returned = false;
  std::thread other([&returned] {
    Ovinta::configure({{"token", "t"}});
    returned = true;
  });
  EXPECT_TRUE(time.waitUntil([&returned] { return returned.load(); }, std::chrono::minutes(1)));
  other.join();
  EXPECT_NE(Library::process().locationUpdater(), nullptr);
  EXPECT_THAT(locationServices->madeOnMain, testing::ElementsAre(true));
  EXPECT_TRUE(device->isBatteryMonitoringEnabled());
}

TEST_F(OvintaTest, VersionsAreReadOnce) {
  EXPECT_EQ(Ovinta::sdkVersion(), "9.4.8");
  libraryBundle->setInfoText("CFBundleShortVersionString", "10");
  EXPECT_EQ(Ovinta::sdkVersion(), "9.4.8");
  restartWith([](platform::Services& changed) {
    changed.mainBundle = changed.libraryBundle =
        std::make_shared<platform::simulation::SimulatedBundle>();
  });
  EXPECT_EQ(Ovinta::sdkVersion(), "");
  EXPECT_EQ(Library::process().context()->appVersion(), "");
}

std::string profile(const std::string& entries) {
  return "\x30\x7F junk <plist><dict>" + entries + "</dict></plist> junk";
}

TEST(DevelopmentPushTest, FindsTheEnvironmentInTheProfile) {
  const std::string key = "<key>aps-environment</key>";
  const std::string development = "<string>development</string>";
  const std::pair<std::string, bool> cases[] = {
      {profile(key + development), true},
      {profile("<key>a</key><string>production</string>" + key + development), true},
      // The next text after the key is taken, whatever lies between.
      {profile(key + "<true/><key>b</key>" + development), true},
      {profile(key + "<string>production</string>" + key + development), false},
      {profile(key + "<string>Development</string>"), false},
      {profile(key + "<string>developments</string>"), false},
      {profile(key + "<string> development</string>"), false},
      {profile(key + "<string></string>" + development), false},
      {profile(development + key), false},
      {profile(key + "<string>development"), false},
      {profile(key + development) + "\x80", false},
      {"", false},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(namesDevelopmentEnvironment(text), expected) << text;
  }
}

TEST_F(OvintaTest, PushTokensTakeTheServicesForm) {
  EXPECT_EQ(Ovinta::pushToken(), std::nullopt);
  const std::vector<std::uint8_t> bytes{0x00, 0x0A, 0xFF};
  Ovinta::updateAPNPushToken(bytes);
  EXPECT_EQ(Ovinta::pushToken(), "000aff");

  // The profile is looked up each time.
  const std::string environment = "<key>aps-environment</key><string>development</string>";
  mainBundle->setResource("embedded", "mobileprovision", profile(environment));
  Ovinta::updateAPNPushToken(bytes);
  EXPECT_EQ(Ovinta::pushToken(), "dev:000aff");
  Ovinta::updateAPNPushToken({});
  EXPECT_EQ(Ovinta::pushToken(), "dev:");

  Ovinta::updatePushToken("As It Is");
  EXPECT_EQ(Ovinta::pushToken(), "As It Is");
  Ovinta::setPushToken(std::nullopt);
  EXPECT_EQ(Ovinta::pushToken(), std::nullopt);
}

using ConfigurationTest = SDKFixture;

TEST_F(ConfigurationTest, IsWhateverTheServiceSends) {
  using platform::Dictionary;
  const Step asked = requested("GET", "m/v1/app");
  const Item unreadable = theError(Title::getConfiguration, Message::unreadable);
  const platform::List list{1, Dictionary{{"b", nullptr}}};
  const std::pair<const char*, Item> cases[] = {
      {R"({"data":{"a":[1,{"b":null}],"c":1.5}})", itemOf(Dictionary{{"a", list}, {"c", 1.5}})},
      {R"({"data":{}})", itemOf(Dictionary{})},
      {R"({"data":[]})", {}},
      {R"({"data":null})", {}},
      {"{}", {}},
      {R"([{"data":{}}])", {}},
      {"5", unreadable},
      {"null", unreadable},
  };
  for (const auto& [body, received] : cases) {
    answerAll(Answer::json(200, body));
    Ovinta::config().fetch(tell());
    EXPECT_THAT(outcome(), are(asked, told(received))) << "each fetch asks anew";
  }
  Ovinta::config().fetch();
  EXPECT_THAT(outcome(), are(asked)) << "also when nobody wants to know";
}

TEST_F(ConfigurationTest, IsNotAskedForWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  Ovinta::config().fetch(tell());
  EXPECT_THAT(outcome(), are());
}

}  // namespace
}  // namespace ovinta::test
