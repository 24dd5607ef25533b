#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <typeinfo>

#include "OvintaSDK/api/CreateOrderEventOperation.h"
#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/api/OvintaAPIError.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/model/LocationUpdateEvent.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/OvintaSDK/api/OperationCases.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using platform::HTTPResponse;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::PrintToString;
using ::testing::StartsWith;

/// Runs one operation. What it sends is tested with its manager, and what the statuses of the
/// service come to over real HTTP.
class OperationTest : public SDKFixture, public ::testing::WithParamInterface<OperationCase> {
 protected:
  /// What the callback receives: "a result" or the error's kind, title and text; "" for no call.
  /// The operation is kept alive by its request alone.
  std::string outcome(const Answer& answer, std::string_view baseURL = kBaseURL) {
    const auto outcome = std::make_shared<std::string>();
    answerAll(answer);
    GetParam()
        .make(std::string(baseURL),
              [outcome](bool hasResult, const ErrorPtr& error) {
                *outcome += hasResult ? "a result" : "";
                if (!error) return;
                const OvintaError& reported = *error;
                *outcome += typeid(reported).name() + PrintToString(itemOf(error));
              })
        ->main();
    drain();
    return *outcome;
  }

  template <class Error>
  static std::string failure(std::string_view message) {
    return typeid(Error).name() + PrintToString(theError(GetParam().title, message));
  }

  static Answer status(int number, std::optional<std::string> data = {}) {
    return {std::move(data), HTTPResponse{.statusCode = number}, {}};
  }
};

TEST_P(OperationTest, TellsTheTransportsErrorBeforeAnAnswer) {
  const platform::TransportError lost{"lost"};
  EXPECT_EQ(outcome({GetParam().answer, HTTPResponse{500}, lost}), failure<OvintaError>("lost"));
  EXPECT_EQ(outcome({{}, HTTPResponse{GetParam().success}, lost}), failure<OvintaError>("lost"));
  EXPECT_EQ(outcome({}), failure<OvintaError>(Message::unknown));
  EXPECT_EQ(outcome(status(500)), failure<OvintaAPIError>(Message::unknown));
  EXPECT_EQ(outcome(status(GetParam().success)), "") << "a success without data";
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_P(OperationTest, ReportsAnswersThatCannotBeRead) {
  for (const std::string& text : GetParam().unreadable) {
    EXPECT_EQ(outcome(status(GetParam().success, text)),
              failure<OvintaErrorInvalidResponse>(Message::unreadable))
        << text;
  }
  const std::string prefix(GetParam().logPrefix);
  EXPECT_THAT(logLines(), testing::SizeIs(prefix.empty() ? 0U : GetParam().unreadable.size()));
  EXPECT_THAT(logLines(), testing::Each(testing::AllOf(StartsWith(prefix), EndsWith("."))));
  if (prefix.empty()) return;
  EXPECT_EQ(logLines().front(), prefix + "data corrupted: The given data was not valid JSON..");
}

TEST_P(OperationTest, RefusesABadBaseURLWithoutTraffic) {
  for (const char* base : {"", "https://a test"}) {
    EXPECT_EQ(outcome({}, base), failure<OvintaErrorInvalidURL>(Message::invalidURL));
    GetParam().make(base, nullptr)->main();
  }
  EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(OperationTest, WithoutACallbackStillSends) {
  for (const Answer& answer : {status(GetParam().success, GetParam().answer), status(410),
                               status(GetParam().success, "no JSON"), Answer::failure("lost")}) {
    answerAll(answer);
    GetParam().make(std::string(kBaseURL), nullptr)->main();
    EXPECT_EQ(http->deliverAll(), 1U);
  }
  EXPECT_THAT(logLines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Endpoints, OperationTest, ::testing::ValuesIn(operationCases()),
                         [](const auto& test) { return test.param.name; });

using SingleOperationTest = SDKFixture;

TEST_F(SingleOperationTest, ABodyThatCannotBeWrittenIsLeftOut) {
  answer("POST", "m/v1/events", Answer::json(200, ""));
  ::testing::internal::CaptureStdout();
  int calls = 0;
  std::make_shared<CreateOrderEventOperation>(
      APIClient(Library::process().context(), std::string(kBaseURL)), signIn(),
      locationUpdateEvent(7, {.coordinate = {std::nan(""), 0}}, {}, {}), [](const auto&) {},
      [&calls](const auto& sent, const auto&) { calls += sent ? 1 : 0; })
      ->main();
  std::fflush(stdout);
  const std::string printed = ::testing::internal::GetCapturedStdout();
  drain();
  EXPECT_EQ(std::ranges::count(printed, '\n'), 1);
  EXPECT_THAT(printed, testing::AllOf(StartsWith("invalid value"), EndsWith("\n")));
  EXPECT_THAT(bodies("POST", "m/v1/events"), testing::ElementsAre("(none)"));
  EXPECT_EQ(calls, 1);
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
