#include "OvintaSDK/api/RequestBuilder.h"

#include <gmock/gmock.h>

#include "OvintaSDK/core/OvintaState.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using platform::HeaderField;
using ::testing::ElementsAre;

using RequestBuilderTest = SDKFixture;

TEST_F(RequestBuilderTest, PathsAreAppendedToTheBase) {
  using Items = std::optional<std::vector<platform::URLQueryItem>>;
  const struct {
    const char* base;
    std::optional<APIPath> path;
    Items items;
    const char* url;
  } cases[] = {
      {"https://a.test", {}, {}, "https://a.test"},
      {"https://a.test", APIPath::app(), {}, "https://a.test/m/v1/app"},
      {"https://a.test/", APIPath::customer(), {}, "https://a.test/m/v1/customer"},
      {"https://a.test/x/", APIPath::signUp(), {}, "https://a.test/x/m/v1/customer/sign_up"},
      {"https://a.test", APIPath::setPassword(), {}, "https://a.test/m/v1/customer/password"},
      // These two paths have a slash of their own.
      {"https://a.test/", APIPath::setPassword(), {}, "https://a.test//m/v1/customer/password"},
      {"https://a.test", APIPath::order("AB 1"), {}, "https://a.test/m/v1/orders/AB%201"},
      {"https://a.test", APIPath::sites(), Items(std::in_place), "https://a.test/m/v1/sites?"},
      {"https://a.test",
       APIPath::sites(),
       {{{"q", "a b&c+ü"}, {"page", "2"}}},
       "https://a.test/m/v1/sites?q=a%20b%26c%2B%C3%BC&page=2"},
      {"https://a.test/?k=v", APIPath::sites(), {{{"q", ""}}}, "https://a.test/m/v1/sites?q="},
      {"https://a.test/?k=v", APIPath::sites(), {}, "https://a.test/m/v1/sites?k=v"},
  };
  for (const auto& [base, path, items, url] : cases) {
    const auto request = makeRequest(base, path, {}, items);
    EXPECT_EQ(request ? request->url.text : "(none)", url);
  }
  for (const char* base : {"", "https://a test", "https://ä.test", "https://a.test:port"}) {
    EXPECT_FALSE(makeRequest(base, APIPath::orders(), {}, {})) << base;
  }
}

TEST_F(RequestBuilderTest, HeadersComeInOneOrder) {
  const auto headers = [](std::optional<std::string> token) {
    return makeRequest(kBaseURL, APIPath::orders(), token, {})->headers;
  };
  const HeaderField authorization{"Authorization", "Token token=\"abc\""};
  const HeaderField sdkVersion{"SDK-Version", "9.4.8"};
  const HeaderField appVersion{"App-Version", "1.2.3"};
  const HeaderField sdkPlatform{"SDK-Platform", "ios"};
  const HeaderField contentType{"Content-Type", "application/json"};
  const HeaderField accept{"Accept", "application/json"};
  EXPECT_THAT(headers({}), ElementsAre(sdkVersion, appVersion, sdkPlatform, contentType, accept));
  EXPECT_THAT(headers("abc"),
              ElementsAre(authorization, sdkVersion, appVersion, sdkPlatform, contentType, accept));
  OvintaState::current().appToken.set("app");
  EXPECT_THAT(headers("abc"),
              ElementsAre(authorization, HeaderField{"App-Token", "app"}, sdkVersion, appVersion,
                          sdkPlatform, contentType, accept));
}

}  // namespace
}  // namespace ovinta::test
