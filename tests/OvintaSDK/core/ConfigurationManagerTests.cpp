#include "OvintaSDK/core/ConfigurationManager.h"

#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;

class ConfigurationTest : public SDKFixture {
 protected:
  struct Outcome {
    std::optional<Dictionary> configuration;
    ErrorPtr error;
  };

  /// What one fetch reports.
  std::vector<Outcome> fetch() {
    std::vector<Outcome> outcomes;
    Ovinta::config().fetch([&](const auto& configuration, const auto& error) {
      outcomes.push_back({configuration, error});
    });
    drain();
    return outcomes;
  }
};

TEST_F(ConfigurationTest, IsWhateverTheServiceSends) {
  struct Case {
    Answer reply;
    std::optional<Dictionary> configuration;
    bool isError = false;
  };
  const Case cases[] = {
      {Answer::json(200, R"({"data":{"a":[1,{"b":null}],"c":1.5}})"),
       Dictionary{{"a", platform::List{1, Dictionary{{"b", nullptr}}}}, {"c", 1.5}}},
      {Answer::json(200, R"({"data":{}})"), Dictionary{}},
      {Answer::json(200, R"({"data":[]})"), {}},
      {Answer::json(200, R"({"data":null})"), {}},
      {Answer::json(200, "{}"), {}},
      {Answer::json(200, R"([{"data":{}}])"), {}},
      {Answer::json(200, "5"), {}, true},
      {Answer::json(200, "null"), {}, true},
      {Answer::json(401, ""), {}, true},
  };
  for (const auto& [reply, configuration, isError] : cases) {
    answer("GET", "m/v1/app", reply);
    const auto outcomes = fetch();
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(outcomes[0].configuration, configuration);
    EXPECT_EQ(outcomes[0].error != nullptr, isError);
  }
  EXPECT_EQ(requests().size(), std::size(cases)) << "each fetch asks anew";
  Ovinta::config().fetch();
  drain();
  EXPECT_EQ(requests().size(), std::size(cases) + 1) << "also when nobody wants to know";
}

TEST_F(ConfigurationTest, IsNotAskedForWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  EXPECT_TRUE(fetch().empty());
  EXPECT_TRUE(requests().empty());
  EXPECT_TRUE(logLines().empty());
}

}  // namespace
}  // namespace ovinta::test
