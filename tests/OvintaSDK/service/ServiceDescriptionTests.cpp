// What the library sends and the sandbox answers, held against the description of the service.
#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <set>

#include "sandbox/routes/Routes.h"
#include "tests/OvintaSDK/service/ServiceFixture.h"
#include "tests/support/Command.h"
#include "tests/support/Files.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;
using platform::List;

class ServiceDescriptionTest : public ServiceFixture {
 protected:
  /// What the validator says of the exchanges and of the description itself.
  Dictionary judgement(const List& exchanges, const char* document = OVINTA_OPENAPI_DOCUMENT) {
    const auto file = directory.path() / "exchanges.json";
    writeFile(file, platform::writeJSON(exchanges));
    const auto result = runCommand({OVINTA_HOLD_AGAINST_OPENAPI, document, file.string()});
    EXPECT_EQ(result.exitCode, 0) << result.output;
    const auto said = platform::parseJSON(result.output);
    return said && said->as<Dictionary>() ? *said->as<Dictionary>() : Dictionary();
  }

  static std::vector<std::string> texts(const Dictionary& record, std::string_view key) {
    std::vector<std::string> result;
    const auto* list = platform::find<List>(record, key);
    for (const auto& text : list ? *list : List()) result.push_back(*text.as<std::string>());
    return result;
  }

  /// Runs all operations on what is there, on what is not, on what is gone, and with an app that is
  /// too old.
  void exchangeAll() {
    for (const OperationCase& any : operationCases()) {
      const auto report = run(soundCase(any.name));
      EXPECT_TRUE(report && report->hasResult) << any.name;
      run(any);
    }
    const OperationInputs inputs = makeInputs();
    const std::string order = std::to_string(inputs.event.orderID);
    EXPECT_EQ(speaker->send("POST", "/sandbox/orders/" + order + "/gone").status, 200);
    for (const OperationCase& onGone : operationCases(inputs)) run(onGone);
    speaker->send("PUT", "/sandbox/minimum-app-version/99");
    for (const OperationCase& any : operationCases()) run(any);
  }
};

TEST_F(ServiceDescriptionTest, HoldsForAllExchanges) {
  exchangeAll();
  const Dictionary said = judgement(session->exchanges());
  EXPECT_THAT(texts(said, "document"), testing::IsEmpty());

  std::set<std::string> seen;
  const List& exchanges = *platform::find<List>(said, "exchanges");
  for (std::size_t i = 0; i < exchanges.size(); ++i) {
    const auto& exchange = *exchanges[i].as<Dictionary>();
    EXPECT_THAT(texts(exchange, "complaints"), testing::IsEmpty())
        << platform::writeJSON(session->exchanges()[i]);
    if (const auto* route = platform::find<std::string>(exchange, "route")) seen.insert(*route);
  }
  EXPECT_THAT(texts(said, "routes"), ::testing::UnorderedElementsAreArray(seen));
}

TEST_F(ServiceDescriptionTest, IsBrokenByASpoiltExchange) {
  const auto spoilt = [](const char* target, const std::string& data, int status) {
    const Dictionary headers{{"Content-Type", "application/json"}};
    return Dictionary{
        {"request", Dictionary{{"method", "POST"},
                               {"target", target},
                               {"headers", headers},
                               {"body", "{\"data\":" + data + "}"}}},
        {"answer",
         Dictionary{{"status", status}, {"headers", headers}, {"body", R"({"data":{"id":"7"}})"}}}};
  };
  const std::string said = platform::writeJSON(
      judgement({spoilt("/m/v1/orders?page=1", R"({"site_id":"42","partner_identifier":"P"})", 200),
                 spoilt("/m/v1/orders", R"({"x":1})", 418), spoilt("/m/v1/order", "{}", 200)}));
  for (const char* complaint :
       {"/page: Not described", "/Authorization: Missing", "/site_id: Expected integer",
        "not allowed: x", "/id: Expected integer", "418 is not described",
        "endpoint is not described"}) {
    EXPECT_THAT(said, testing::HasSubstr(complaint));
  }
}

TEST_F(ServiceDescriptionTest, NamesTheEndpointsOfTheSandbox) {
  for (const char* document : {OVINTA_OPENAPI_DOCUMENT, OVINTA_SANDBOX_DOCUMENT}) {
    const bool isTesters = document != std::string_view(OVINTA_OPENAPI_DOCUMENT);
    const Dictionary said = judgement({}, document);
    EXPECT_THAT(texts(said, "document"), testing::IsEmpty());
    auto names = texts(said, "routes");
    for (std::string& name : names) {
      name = std::regex_replace(name, std::regex(R"(\{method\})"), "GET");
      name = std::regex_replace(name, std::regex(R"(\{\w+\})"), "7");
    }
    std::size_t count = 0;
    for (const sandbox::Route& route : sandbox::routes()) {
      if ((route.access == sandbox::Access::everyone) != isTesters) continue;
      ++count;
      const std::string pattern = std::string(route.method) + " " + std::string(route.pattern);
      EXPECT_TRUE(std::ranges::any_of(names, [&](const std::string& name) {
        return std::regex_match(name, std::regex(pattern));
      })) << pattern;
    }
    EXPECT_EQ(names.size(), count) << document;
  }
}

}  // namespace
}  // namespace ovinta::test
