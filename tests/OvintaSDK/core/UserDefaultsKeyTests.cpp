#include "OvintaSDK/core/UserDefaultsKey.h"

#include "platform/portable/Portable.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using UserDefaultsKeyTest = SDKFixture;

// Those of the customer are tested with it.
TEST_F(UserDefaultsKeyTest, AreFoundByTheirTexts) {
  EXPECT_EQ(UserDefaultsKey::fromRawValue("API Base URL"), UserDefaultsKey::apiBase);
  EXPECT_EQ(UserDefaultsKey::fromRawValue("Last Known Auth Status"),
            UserDefaultsKey::lastKnownAuthStatus);
  for (const char* text : {"", "customerToken", "customer token", "Customer Token "}) {
    EXPECT_EQ(UserDefaultsKey::fromRawValue(text), std::nullopt) << text;
  }
}

TEST_F(UserDefaultsKeyTest, TextsComeAndGo) {
  const UserDefaultsKey key = UserDefaultsKey::customerPhone;
  services.settings->registerDefault(key.rawValue(), "default");
  key.set("");
  EXPECT_EQ(key.stringValue(), "");
  key.set(std::nullopt);
  EXPECT_EQ(key.stringValue(), "default");

  const auto store = platform::portable::makeInMemorySettingsStore();
  EXPECT_EQ(stringForKey(*store, key), std::nullopt);
  store->set(key.rawValue(), "of another store");
  EXPECT_EQ(stringForKey(*store, key), "of another store");
}

TEST_F(UserDefaultsKeyTest, OnlyTheTextYESIsTrue) {
  const UserDefaultsKey key = UserDefaultsKey::customerName;
  EXPECT_FALSE(key.boolValue());
  for (const char* text : {"NO", "yes", "true", "1", "YES ", ""}) {
    key.set(text);
    EXPECT_FALSE(key.boolValue()) << text;
  }
  key.setBool(true);
  EXPECT_EQ(key.stringValue(), "YES");
  EXPECT_TRUE(key.boolValue());
  key.setBool(false);
  EXPECT_EQ(key.stringValue(), "NO");
  EXPECT_FALSE(key.boolValue());
}

}  // namespace
}  // namespace ovinta::test
