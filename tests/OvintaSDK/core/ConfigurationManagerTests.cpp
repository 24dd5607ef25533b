#include "OvintaSDK/core/ConfigurationManager.h"

#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

class ConfigurationTest : public SDKFixture {
 protected:
  /// What one fetch comes to.
  std::string fetch() {
    Ovinta::config().fetch(tell());
    return outcome();
  }
};

TEST_F(ConfigurationTest, IsWhateverTheServiceSends) {
  const char* const kUnreadable = "Error Getting Configuration: invalid response";
  const std::pair<const char*, std::string> cases[] = {
      {R"({"data":{"a":[1,{"b":null}],"c":1.5}})", R"(configuration {"a":[1,{"b":null}],"c":1.5})"},
      {R"({"data":{}})", "configuration {}"},
      {R"({"data":[]})", "nothing"},
      {R"({"data":null})", "nothing"},
      {"{}", "nothing"},
      {R"([{"data":{}}])", "nothing"},
      {"5", kUnreadable},
      {"null", kUnreadable},
  };
  for (const auto& [body, told] : cases) {
    answerAll(Answer::json(200, body));
    EXPECT_EQ(fetch(), "\nGET m/v1/app\ntold " + told) << "each fetch asks anew";
  }
  Ovinta::config().fetch();
  EXPECT_EQ(outcome(), "\nGET m/v1/app") << "also when nobody wants to know";
}

TEST_F(ConfigurationTest, IsNotAskedForWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  EXPECT_EQ(fetch(), "");
}

}  // namespace
}  // namespace ovinta::test
