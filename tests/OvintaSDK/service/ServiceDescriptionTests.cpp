// What the library sends and the sandbox answers, held against the description of the service.
#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <set>

#include "sandbox/Routes.h"
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
  Dictionary judgement(const List& exchanges) {
    const auto file = directory.path() / "exchanges.json";
    writeFile(file, platform::writeJSON(exchanges));
    const auto result =
        runCommand({OVINTA_HOLD_AGAINST_OPENAPI, OVINTA_OPENAPI_DOCUMENT, file.string()});
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
  run(soundCase("CreateOrder"));
  const Dictionary exchange = *session->exchanges()[0].as<Dictionary>();
  const struct {
    const char* part;
    const char* key;
    platform::Value value;
    const char* complaint;
  } cases[] = {
      {"request", "target", "/m/v1/order", "endpoint is not described"},
      {"request", "target", "/m/v1/orders?page=1", "/page: Not described"},
      {"request", "headers", Dictionary{}, "/Authorization: Missing"},
      {"request", "body", R"({"data":{"site_id":"42","partner_identifier":"P"}})",
       "/site_id: Expected integer"},
      {"request", "body", R"({"data":{"site_id":42,"partner_identifier":"P","x":1}})",
       "not allowed: x"},
      {"answer", "status", 418, "418 is not described"},
      {"answer", "body", R"({"data":{"id":"7"}})", "/id: Expected integer"},
  };
  List spoilt;
  for (const auto& [part, key, value, complaint] : cases) {
    Dictionary inner = *platform::find<Dictionary>(exchange, part);
    inner.insert_or_assign(key, value);
    spoilt.emplace_back(with(exchange, {{part, inner}}));
  }
  const Dictionary said = judgement(spoilt);
  const List& judged = *platform::find<List>(said, "exchanges");
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_THAT(texts(*judged[i].as<Dictionary>(), "complaints"),
                testing::Contains(testing::HasSubstr(cases[i].complaint)));
  }
}

TEST_F(ServiceDescriptionTest, NamesTheEndpointsOfTheSandbox) {
  std::vector<std::string> described;
  for (const sandbox::Route& route : sandbox::routes()) {
    if (route.access == sandbox::Access::everyone) continue;
    described.push_back(std::string(route.method) + " " + std::string(route.pattern));
  }
  const auto names = texts(judgement({}), "routes");
  EXPECT_EQ(names.size(), described.size());
  for (const std::string& pattern : described) {
    EXPECT_TRUE(std::ranges::any_of(names, [&](const std::string& name) {
      return std::regex_match(name, std::regex(pattern));
    })) << pattern;
  }
}

}  // namespace
}  // namespace ovinta::test
