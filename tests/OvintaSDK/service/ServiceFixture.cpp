#include "tests/OvintaSDK/service/ServiceFixture.h"

#include <algorithm>
#include <cstdlib>

namespace ovinta::test {

namespace {

using platform::Dictionary;

Dictionary record(const std::vector<platform::HeaderField>& fields) {
  Dictionary result;
  for (const auto& [name, value] : fields) result.emplace(name, value);
  return result;
}

Dictionary record(const platform::URLRequest& request) {
  const std::string& url = request.url.text;
  return {{"method", request.method},
          {"target", url.substr(url.find('/', url.find("//") + 2))},
          {"headers", record(request.headers)},
          {"body", request.body.value_or("")}};
}

}  // namespace

ObservedURLSession::ObservedURLSession(std::optional<std::filesystem::path> caFile)
    : session_({.caFile = std::move(caFile), .now = [this] { return clock_.now(); }}) {}

bool ObservedURLSession::waitOut() {
  // The session may have noted the last bytes only after the first of these.
  for (int i = 0; i < 2; ++i) {
    clock_.pass(std::chrono::seconds(10), [this] { session_.lookAtTime(); });
    if (ended_.try_acquire()) return true;
  }
  return false;
}

void ObservedURLSession::startDataTask(platform::URLRequest request, Completion completion) {
  EXPECT_EQ(request.timeout, std::chrono::seconds(10));
  const Dictionary sent = record(request);
  session_.startDataTask(std::move(request), [this, sent, completion](auto data, auto response,
                                                                      auto error) {
    if (response) {
      exchanges_.push_back(Dictionary{{"request", sent},
                                      {"answer", Dictionary{{"status", response->statusCode},
                                                            {"headers", record(response->headers)},
                                                            {"body", data.value_or("")}}}});
    }
    completion(std::move(data), std::move(response), std::move(error));
    ended_.release();
  });
}

ServiceFixture::ServiceFixture() {
  setenv("no_proxy", "*", 1);
  EXPECT_EQ(service.start(), std::nullopt);
  speaker.emplace(service);
  restartWith([this](platform::Services& services) { services.urlSession = session; });
}

OperationInputs ServiceFixture::makeInputs() {
  OperationInputs inputs;
  inputs.login = {.emailAddress = "ann" + std::to_string(++accounts_) + "@example.com",
                  .password = "secret"};
  speaker->becomeCustomer();
  speaker->signUp(inputs.login.emailAddress, inputs.login.password);
  speaker->send("POST", "/m/v1/customer/password",
                R"({"email":")" + inputs.login.emailAddress + "\"}");
  inputs.newPassword = {.resetPasswordToken = speaker->resetToken(inputs.login.emailAddress),
                        .password = "secret2",
                        .confirmation = "secret2"};
  inputs.customer.token = customerToken = speaker->becomeCustomer();
  inputs.newCustomer.customerConsent.ageVerification = true;
  inputs.signUp = {.emailAddress = "new-" + inputs.login.emailAddress,
                   .password = "secret",
                   .passwordConfirmation = "secret"};
  const auto order = speaker->createOrder();
  inputs.code = order.text("redemption_code");
  inputs.claimCode = speaker->offerOrder();
  inputs.event = OrderEvent::rating(*platform::find<std::int64_t>(order.record(), "id"), 5, {});
  return inputs;
}

OperationCase ServiceFixture::soundCase(const std::string& name) {
  const auto cases = operationCases(makeInputs());
  return *std::ranges::find(cases, name, &OperationCase::name);
}

ServiceFixture::Reports ServiceFixture::start(const OperationCase& operation,
                                              const std::string& baseURL) const {
  auto reports = std::make_shared<std::vector<Report>>();
  operation
      .make(baseURL,
            [reports](bool hasResult, const ErrorPtr& error) {
              reports->push_back({hasResult, error});
            })
      ->main();
  return reports;
}

std::optional<ServiceFixture::Report> ServiceFixture::run(const OperationCase& operation) {
  const auto reports = start(operation, service.baseURL());
  session->wait();
  EXPECT_LE(reports->size(), 1U);
  return reports->empty() ? std::nullopt : std::optional(reports->front());
}

}  // namespace ovinta::test
