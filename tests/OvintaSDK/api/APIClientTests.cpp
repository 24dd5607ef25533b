#include "OvintaSDK/api/APIClient.h"

#include "OvintaSDK/core/facade/Library.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

class APIClientTest : public SDKFixture {
 protected:
  static APIClient client(std::string_view base) {
    return {Library::process().context(), std::string(base)};
  }
};

TEST_F(APIClientTest, PathsAreAppendedToTheBase) {
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
    const auto request = client(base).makeRequest(path, {}, items);
    EXPECT_EQ(request ? request->url.text : "(none)", url);
  }
  for (const char* base : {"", "https://a test", "https://ä.test", "https://a.test:port"}) {
    EXPECT_FALSE(client(base).makeRequest(APIPath::orders(), {}, {})) << base;
  }
}

TEST_F(APIClientTest, HeadersComeInOneOrder) {
  const auto headers = [](std::optional<std::string> token) {
    std::string lines;
    const auto request = client(kBaseURL).makeRequest(APIPath::orders(), token, {});
    for (const auto& [name, value] : request->headers) {
      lines += name + ": " + value + "\n";
    }
    return lines;
  };
  const std::string common =
      "SDK-Version: 9.4.8\nApp-Version: 1.2.3\nSDK-Platform: ios\n"
      "Content-Type: application/json\nAccept: application/json\n";
  const std::string authorization = "Authorization: Token token=\"abc\"\n";
  EXPECT_EQ(headers({}), common);
  EXPECT_EQ(headers("abc"), authorization + common);
  Library::process().context()->appToken.set("app");
  EXPECT_EQ(headers("abc"), authorization + "App-Token: app\n" + common);
}

}  // namespace
}  // namespace ovinta::test
