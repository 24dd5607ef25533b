#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>

#include "platform/linux/http/CurlURLSession.h"
#include "tests/support/SteppedClock.h"

namespace ovinta::platform {

inline void PrintTo(const HeaderField& field, std::ostream* out) {
  *out << field.name << ": " << field.value;
}

}  // namespace ovinta::platform

namespace ovinta::platform::linuxos {

/// What a completion received.
struct Outcome {
  std::optional<std::string> data;
  std::optional<HTTPResponse> response;
  std::optional<TransportError> error;

  /// 0: no response.
  int statusCode() const { return response ? response->statusCode : 0; }
  std::string sentence() const { return error ? error->localizedDescription : ""; }
};

class CurlURLSessionFixture : public testing::Test {
 protected:
  CurlURLSessionFixture() { setenv("no_proxy", "*", 1); }

  void restart(CurlURLSession::Options options) {
    session_ = std::make_unique<CurlURLSession>(std::move(options));
  }

  std::future<Outcome> start(URLRequest request) {
    auto promise = std::make_shared<std::promise<Outcome>>();
    session_->startDataTask(std::move(request), [promise](auto data, auto response, auto error) {
      promise->set_value({std::move(data), std::move(response), std::move(error)});
    });
    return promise->get_future();
  }

  Outcome fetch(URLRequest request) { return start(std::move(request)).get(); }
  Outcome get(const std::string& url) { return fetch({.url = {url}}); }

  /// A session with a time of its own, `clock_`, which stands still.
  void restartStepped() {
    clock_ = std::make_shared<test::SteppedClock>();
    restart({.now = [clock = clock_] { return clock->now(); }});
  }

  void pass(std::chrono::milliseconds time) {
    clock_->pass(time, [this] { session_->lookAtTime(); });
  }

  static bool hasEnded(const std::future<Outcome>& request) {
    return request.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  }

  std::shared_ptr<test::SteppedClock> clock_;
  std::unique_ptr<CurlURLSession> session_ = std::make_unique<CurlURLSession>();
};

}  // namespace ovinta::platform::linuxos
