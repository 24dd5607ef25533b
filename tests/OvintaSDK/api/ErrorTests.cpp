#include <gmock/gmock.h>

#include "OvintaSDK/api/OvintaAPIError.h"
#include "OvintaSDK/core/TextHelpers.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using ErrorTest = SDKFixture;

struct Context : ErrorContext {
  explicit Context(std::string_view text) : phrase(text) {}
  std::string_view errorContext() const override { return phrase; }
  std::string_view phrase;
};

TEST_F(ErrorTest, TitlesTellWhatWasDone) {
  EXPECT_EQ(OvintaError().errorDescription(), Message::unknown);
  EXPECT_EQ(OvintaError("").errorDescription(), "");
  const std::pair<ErrorSubject, const char*> cases[] = {
      {{}, "Error"},
      {Context("getting orders"), "Error Getting Orders"},
      {Context("getting Sites for a region"), "Error Getting Sites For A Region"},
      {Context("reading THE url"), "Error Reading The Url"},
      {ErrorSubject::ofType("SyncOrdersOperation"), "Error with Sync Orders Operation"},
  };
  for (const auto& [subject, title] : cases) {
    EXPECT_EQ(OvintaError("message", subject).title(), title);
    EXPECT_EQ(OvintaAPIError({}, {}, subject).title(), title);
  }
}

TEST_F(ErrorTest, CamelCaseFallsIntoWordsBeforeEachCapital) {
  const std::pair<const char*, const char*> cases[] = {
      {"ABC", "A B C"},
      {"GetCustomerOperation", "Get Customer Operation"},
      {"already Two", "already  Two"},
      {"grünÄpfel", "grün Äpfel"},
      {"aǅ", "a ǅ"},
      {"a𝐀", "a 𝐀"},
      // Bytes that are not UTF-8, also a sequence that is cut off, pass through.
      {"a\xC3", "a\xC3"},
      {"\xFF\x41", "\xFF A"},
  };
  for (const auto& [text, words] : cases) EXPECT_EQ(wordsFromCamelCase(text), words) << text;
}

TEST_F(ErrorTest, APIErrorsTellWhatTheAnswerSays) {
  const char* const kTwoFields = R"({"errors":{"name":["is blank"],"email":["is taken","x"]}})";
  const char* const kBody = R"({"more":1,"errors":{"name":["is blank"]}})";
  const struct {
    std::optional<int> status;
    std::optional<std::string> data;
    std::string_view description;
  } cases[] = {
      {422, kTwoFields, "is taken, x, is blank"},
      {500, kBody, "is blank"},
      {{}, kBody, "is blank"},
      {422, R"({"errors":{}})", ""},
      {422, R"({"errors":{"name":[]}})", ""},
      // What is no error body leaves the status to tell.
      {422, {}, Message::unprocessable},
      {422, "<html>", Message::unprocessable},
      {422, "{}", Message::unprocessable},
      {422, R"({"errors":null})", Message::unprocessable},
      {422, R"({"errors":["is blank"]})", Message::unprocessable},
      {422, R"({"errors":{"name":"is blank"}})", Message::unprocessable},
      {422, R"({"errors":{"name":["is blank",null]}})", Message::unprocessable},
      {422, R"({"errors":{"a":["b"],"name":[5]}})", Message::unprocessable},
      {{}, {}, Message::unknown},
  };
  for (const auto& [status, data, description] : cases) {
    SCOPED_TRACE(std::to_string(status.value_or(0)) + " " + data.value_or("(none)"));
    const auto response =
        status ? std::optional(platform::HTTPResponse{.statusCode = *status}) : std::nullopt;
    const OvintaAPIError error(response, data, {});
    EXPECT_EQ(error.errorDescription(), description);
    EXPECT_EQ(error.statusCode(), status ? httpStatusCode(*status) : std::nullopt);
    const bool hasBody = data && ErrorBody::parse(*data);
    EXPECT_EQ(error.errors().has_value(), hasBody);
    EXPECT_EQ(error.body().has_value(), hasBody);
  }
  using Fields = std::map<std::string, std::vector<std::string>>;
  EXPECT_EQ(OvintaAPIError({}, kTwoFields, {}).errors(),
            (Fields{{"name", {"is blank"}}, {"email", {"is taken", "x"}}}));
}

TEST_F(ErrorTest, UpgradeLinkIsReadFromTheHeader) {
  const std::string link = "https://store.test/app";
  const struct {
    std::vector<platform::HeaderField> headers;
    std::optional<platform::URL> url;
  } cases[] = {
      {{}, {}},
      {{{"Content-Type", "text/plain"}, {"App-Upgrade-URL", link}}, platform::URL{link}},
      {{{"App-Upgrade-URL", "not a link"}}, {}},
      {{{"App-Upgrade-URL", ""}}, {}},
      {{{"App-Upgrade-Url", link}}, {}},
      {{{"app-upgrade-url", link}}, platform::URL{link}},
      {{{"app-upgrade-url", "https://other.test"}, {"App-Upgrade-URL", link}}, platform::URL{link}},
      {{{"APP-UPGRADE-URL", link}, {"app-upgrade-URL", link}}, {}},
  };
  for (const auto& [headers, url] : cases) {
    for (const int status : {425, 500}) {
      const platform::HTTPResponse response{.statusCode = status, .headers = headers};
      EXPECT_EQ(OvintaAPIError(response, {}, {}).appUpgradeURL(), url);
    }
  }
}

}  // namespace
}  // namespace ovinta::test
