#include "OvintaSDK/api/APIClient.h"

#include "OvintaSDK/core/facade/Library.h"
#include "tests/support/AtOnce.h"
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

/// A grammar that no text keeps to.
struct RefusingFormat : platform::URLFormat {
  std::optional<platform::URL> parse(std::string_view) const override { return std::nullopt; }
  platform::URL withQueryItems(const platform::URL& url,
                               const std::vector<platform::URLQueryItem>&) const override {
    return url;
  }
  platform::URL appendingPathComponent(const platform::URL& url, std::string_view) const override {
    return url;
  }
};

TEST_F(APIClientTest, BasesTakeTurns) {
  platform::Services current = services;
  const auto context = std::make_shared<Context>([&]() -> const auto& { return current; });
  const auto read = [&](const std::string& base) {
    const auto url = context->url(base);
    return url ? url->text : "(none)";
  };
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(read("https://a.test"), "https://a.test");
    EXPECT_EQ(read("https://a test"), "(none)");
    EXPECT_EQ(read("https://b.test"), "https://b.test");
    current.urls = std::make_shared<RefusingFormat>();
    EXPECT_EQ(read("https://b.test"), "(none)");
    current.urls = services.urls;
    EXPECT_EQ(read("https://b.test"), "https://b.test");
  }
  const auto keepReading = [&](const std::string& base) {
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(read(base), base);
  };
  atOnce([&] { keepReading("https://a.test"); }, [&] { keepReading("https://b.test"); });
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
