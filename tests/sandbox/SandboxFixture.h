#pragma once

#include <gmock/gmock.h>
#include <httplib.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "platform/JSON.h"
#include "platform/Value.h"
#include "sandbox/Sandbox.h"

namespace ovinta::sandbox {

using platform::Dictionary;
using platform::List;
using platform::Value;

/// What came back: of {"data": ...} and {"errors": ...} the inner value, null without either.
struct Reply {
  int status = 0;
  Value data = {};
  Dictionary errors = {};
  httplib::Headers headers = {};
  /// The whole text.
  std::string body = {};

  const Dictionary& record() const { return std::get<Dictionary>(data.storage); }
  const List& list() const { return std::get<List>(data.storage); }
  std::string text(std::string_view key) const {
    const auto* found = platform::find<std::string>(record(), key);
    return found ? *found : "(absent)";
  }
};

/// Speaks to a sandbox as an app does.
class Speaker {
 public:
  explicit Speaker(const Sandbox& sandbox) : client_("127.0.0.1", sandbox.port()) {
    client_.set_tcp_nodelay(true);
    headers.emplace("App-Version", "1.2");
  }

  void setToken(const std::string& token) {
    headers.erase("Authorization");
    headers.emplace("Authorization", "Token token=\"" + token + "\"");
  }

  /// Sends `data`, a JSON text, wrapped as apps do; no body when it is empty.
  Reply send(const std::string& method, const std::string& path, const std::string& data = {}) {
    return sendBody(method, path, data.empty() ? "" : "{\"data\":" + data + "}");
  }

  Reply sendBody(const std::string& method, const std::string& path, const std::string& body) {
    httplib::Request request;
    request.method = method;
    request.path = path;
    request.headers = headers;
    request.body = body;
    const httplib::Result result = client_.send(request);
    if (!result) return {};
    Reply reply{.status = result->status, .headers = result->headers, .body = result->body};
    const auto json = platform::parseJSON(result->body);
    if (!json || !json->as<Dictionary>()) return reply;
    const auto& object = *json->as<Dictionary>();
    if (object.contains("data")) reply.data = object.find("data")->second;
    if (const auto* errors = platform::find<Dictionary>(object, "errors")) reply.errors = *errors;
    return reply;
  }

  /// Creates a customer and speaks for it from now on.
  std::string becomeCustomer() {
    std::string token =
        send("POST", "/m/v1/customer",
             R"({"name":"Ann","phone":"5","terms_of_service":true,"age_verification":true})")
            .text("api_token");
    setToken(token);
    return token;
  }

  /// Gives the customer an account.
  void signUp(const std::string& email, const std::string& password = "secret") {
    send("PATCH", "/m/v1/customer/sign_up",
         R"({"email":")" + email + R"(","password":")" + password +
             R"(","password_confirmation":")" + password + "\"}");
  }

  /// Has the merchant create an order, with further fields, and answers its redemption code.
  std::string offerOrder(const std::string& more = {}) {
    const std::string data = R"({"site_id":43,"partner_identifier":"B-7")" + more + "}";
    return send("POST", "/sandbox/orders", data).text("redemption_code");
  }

  /// The token in the message that was sent to the address last; empty without one.
  std::string resetToken(const std::string& email) {
    const Reply customers = send("GET", "/sandbox/customers");
    for (const Value& customer : customers.list()) {
      const auto& record = *customer.as<Dictionary>();
      const auto* token = platform::find<std::string>(record, "reset_password_token");
      const auto* address = platform::find<std::string>(record, "email");
      if (token && address && *address == email) return *token;
    }
    return {};
  }

  /// Creates an order with that push token and answers it.
  Reply createOrder(const std::string& pushToken = "00ff") {
    return send("POST", "/m/v1/orders",
                R"({"site_id":42,"partner_identifier":"A-1","push_token":")" + pushToken + "\"}");
  }

  httplib::Headers headers;

 private:
  httplib::Client client_;
};

/// A request and what has to come back.
struct Step {
  const char* method;
  std::string path;
  std::string data;
  int status;
  /// A part of the answer's body.
  std::string answer = {};
};

/// A running sandbox whose clock stands still until it is told otherwise, and an app.
class SandboxTest : public testing::Test {
 protected:
  static constexpr platform::Date kStart{std::chrono::sys_days{std::chrono::year{2024} / 5 / 1} +
                                         std::chrono::hours(12) + std::chrono::microseconds(7999)};

  explicit SandboxTest(Options options = {}) : sandbox(withClock(std::move(options))) {}

  void SetUp() override { ASSERT_EQ(startError, std::nullopt); }

  void advance(std::chrono::seconds by) { passed_ += by.count(); }

  void take(const std::vector<Step>& steps) {
    for (const Step& step : steps) {
      SCOPED_TRACE(std::string(step.method) + " " + step.path + " " + step.data);
      const Reply reply = app.send(step.method, step.path, step.data);
      EXPECT_EQ(reply.status, step.status);
      EXPECT_THAT(reply.body, testing::HasSubstr(step.answer));
    }
  }

 private:
  Options withClock(Options options) {
    options.now = [this] { return kStart + std::chrono::seconds(passed_); };
    return options;
  }

  std::atomic<std::int64_t> passed_{0};

 protected:
  Sandbox sandbox;
  const std::optional<std::string> startError = sandbox.start();
  Speaker app{sandbox};
};

/// The same with an app that speaks for a customer.
class CustomerTest : public SandboxTest {
 protected:
  using SandboxTest::SandboxTest;

  const std::string token = app.becomeCustomer();
};

}  // namespace ovinta::sandbox
