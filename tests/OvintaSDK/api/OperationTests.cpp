#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <typeinfo>

#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/api/GetOrdersOperation.h"
#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/api/OvintaAPIError.h"
#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "tests/OvintaSDK/api/OperationCases.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

/// The class that the error was made of.
const std::type_info& typeOf(const OvintaError& error) { return typeid(error); }

using platform::HTTPResponse;
using platform::TransportError;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// Runs one operation and keeps what it reports.
class OperationTest : public SDKFixture, public ::testing::WithParamInterface<OperationCase> {
 protected:
  struct Outcome {
    bool hasResult;
    ErrorPtr error;
  };

  /// The reports for an answer; the operation is kept alive by its request alone.
  std::vector<Outcome> outcomes(const Answer& answer, std::string_view baseURL = kBaseURL) {
    const auto reports = std::make_shared<std::vector<Outcome>>();
    http->setService([answer](const auto&) { return answer; });
    GetParam()
        .make(std::string(baseURL),
              [reports](bool hasResult, const ErrorPtr& error) {
                reports->push_back({hasResult, error});
              })
        ->main();
    http->deliverAll();
    return *reports;
  }

  static Answer status(int number, std::optional<std::string> data = {}) {
    return {std::move(data), HTTPResponse{.statusCode = number}, {}};
  }
};

TEST_P(OperationTest, SendsOneRequest) {
  const OperationCase& expected = GetParam();
  const auto reports = outcomes(status(expected.success, expected.answer));
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_TRUE(reports[0].hasResult);
  EXPECT_EQ(reports[0].error, nullptr);

  ASSERT_THAT(requestLines(), ElementsAre(expected.line));
  EXPECT_EQ(requests()[0].body, expected.body);
  const platform::HeaderField token{"Authorization", "Token token=\"customer-token\""};
  EXPECT_EQ(requests()[0].headers.front() == token, expected.isAuthorized);
  EXPECT_THAT(logLines(), IsEmpty());
}

/// What the callback receives for each way in which a request can end.
TEST_P(OperationTest, ReportsFailures) {
  const char* const kBody = R"({"errors":{"a":["b"]}})";
  const TransportError lost{"connection lost"};
  const int otherSuccess = GetParam().success == 200 ? 202 : 200;
  const struct {
    Answer answer;
    const std::type_info& type;
    const char* description;
  } cases[] = {
      {{{}, {}, lost}, typeid(OvintaError), "connection lost"},
      {{{}, HTTPResponse{200}, lost}, typeid(OvintaError), "connection lost"},
      {{GetParam().answer, HTTPResponse{500}, lost}, typeid(OvintaError), "connection lost"},
      {{}, typeid(OvintaError), "Unknown Error"},
      {status(500), typeid(OvintaAPIError), "Unknown Error"},
      {status(otherSuccess, GetParam().answer), typeid(OvintaAPIError), "Unknown Error"},
      {status(401), typeid(OvintaAPIError), "Not authorized"},
      {status(422, kBody), typeid(OvintaAPIError), "b"},
      {status(425), typeid(OvintaAPIError), "Please update to the latest version of the app"},
  };
  for (const auto& [answer, type, description] : cases) {
    const auto reports = outcomes(answer);
    ASSERT_EQ(reports.size(), 1U) << description;
    const auto& [hasResult, error] = reports[0];
    EXPECT_FALSE(hasResult);
    ASSERT_TRUE(error);
    EXPECT_EQ(typeOf(*error), type);
    EXPECT_EQ(error->errorDescription(), description);
    EXPECT_EQ(error->title(), GetParam().title);
  }
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_P(OperationTest, ReportsAnswersThatCannotBeRead) {
  for (const std::string& text : GetParam().unreadable) {
    const auto reports = outcomes(status(GetParam().success, text));
    ASSERT_EQ(reports.size(), 1U) << text;
    EXPECT_FALSE(reports[0].hasResult) << text;
    ASSERT_TRUE(reports[0].error) << text;
    EXPECT_EQ(typeOf(*reports[0].error), typeid(OvintaErrorInvalidResponse)) << text;
    EXPECT_EQ(reports[0].error->errorDescription(), "invalid response");
    EXPECT_EQ(reports[0].error->title(), GetParam().title);
  }
  const std::string& prefix = GetParam().logPrefix;
  EXPECT_THAT(logLines(), SizeIs(prefix.empty() ? 0U : GetParam().unreadable.size()));
  EXPECT_THAT(logLines(), Each(AllOf(StartsWith(prefix), EndsWith("."))));
}

TEST_P(OperationTest, SaysNothingAboutASuccessWithoutData) {
  EXPECT_THAT(outcomes(status(GetParam().success)), IsEmpty());
  EXPECT_EQ(requests().size(), 1U);
}

TEST_P(OperationTest, RefusesABadBaseURLWithoutTraffic) {
  for (const char* base : {"", "https://a test"}) {
    const auto reports = outcomes({}, base);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_FALSE(reports[0].hasResult);
    ASSERT_TRUE(reports[0].error);
    EXPECT_EQ(typeOf(*reports[0].error), typeid(OvintaErrorInvalidURL));
    EXPECT_EQ(reports[0].error->errorDescription(), "invalid URL");
    EXPECT_EQ(reports[0].error->title(), GetParam().title);
    GetParam().make(base, nullptr)->main();
  }
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(OperationTest, WithoutACallbackStillSends) {
  const Answer answers[] = {status(GetParam().success, GetParam().answer), status(410), status(500),
                            status(GetParam().success, "no JSON"), Answer::failure("lost")};
  for (const Answer& answer : answers) {
    http->setService([answer](const auto&) { return answer; });
    GetParam().make(std::string(kBaseURL), nullptr)->main();
    EXPECT_EQ(http->deliverAll(), 1U);
  }
  EXPECT_THAT(logLines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Endpoints, OperationTest, ::testing::ValuesIn(operationCases()),
                         [](const auto& test) { return test.param.name; });

class SingleOperationTest : public SDKFixture {
 protected:
  std::shared_ptr<APIOperation> reporting(OrderEvent event) {
    return std::make_shared<CreateOrderEventOperation>(
        std::string(kBaseURL), std::make_shared<const Customer>(customer()), std::move(event),
        [this](const auto& sent, const auto&) { sentEvents.push_back(sent); });
  }
  std::vector<std::shared_ptr<const OrderEvent>> sentEvents;
};

TEST_F(SingleOperationTest, GettingOrdersLogsWhyItCannotReadThem) {
  answer("GET", "m/v1/orders",
         {Answer::json(200, R"({"data":[{"id":"7"}]})"), Answer::json(200, "")});
  for (int i = 0; i < 2; ++i) {
    GetOrdersOperation::Callback callback = [](const auto&, const auto&) {};
    std::make_shared<GetOrdersOperation>(std::string(kBaseURL),
                                         std::make_shared<const Customer>(customer()), callback)
        ->main();
    http->deliverAll();
  }
  EXPECT_THAT(logLines(),
              ElementsAre("Unexpected error Getting Orders: type mismatch at data[0].id: "
                          "Expected an integer but found something else instead..",
                          "Unexpected error Getting Orders: data corrupted: "
                          "The given data was not valid JSON.."));
}

TEST_F(SingleOperationTest, ABodyThatCannotBeWrittenIsLeftOut) {
  answer("POST", "m/v1/events", Answer::json(200, ""));
  ::testing::internal::CaptureStdout();
  reporting(OrderEvent::locationUpdate(7, {.coordinate = {std::nan(""), 0}}, {}, {}))->main();
  std::fflush(stdout);
  const std::string printed = ::testing::internal::GetCapturedStdout();
  drain();
  EXPECT_EQ(std::ranges::count(printed, '\n'), 1);
  EXPECT_THAT(printed, AllOf(StartsWith("invalid value"), EndsWith("\n")));
  EXPECT_THAT(bodies("POST", "m/v1/events"), ElementsAre("(none)"));
  EXPECT_EQ(sentEvents.size(), 1U);
}

TEST(NumberTextTest, IsTheShortestThatReadsBack) {
  const std::pair<double, const char*> cases[] = {{0, "0.0"},
                                                  {-0.0, "-0.0"},
                                                  {-74, "-74.0"},
                                                  {40.7, "40.7"},
                                                  {0.1 + 0.2, "0.30000000000000004"},
                                                  {1e-4, "0.0001"},
                                                  {1e-5, "1e-05"},
                                                  {123456789, "123456789.0"},
                                                  {1e15, "1000000000000000.0"},
                                                  {1e17, "1e+17"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(numberText(number), text);
}

}  // namespace
}  // namespace ovinta::test
