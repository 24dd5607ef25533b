#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <thread>
#include <utility>

#include "platform/linux/CurlURLSession.h"

namespace ovinta::platform {

inline void PrintTo(const HeaderField& field, std::ostream* out) {
  *out << field.name << ": " << field.value;
}

}  // namespace ovinta::platform

namespace ovinta::platform::linux {

/// What a completion received, and where.
struct Outcome {
  std::optional<std::string> data;
  std::optional<HTTPResponse> response;
  std::optional<TransportError> error;
  std::thread::id thread;

  /// 0: no response.
  int statusCode() const { return response ? response->statusCode : 0; }
  std::string sentence() const { return error ? error->localizedDescription : ""; }
};

/// A time that stands still unless it is moved; once `run()`, every look at it moves it.
class SteppedClock {
 public:
  CurlTransfer::Instant now() {
    ++looks_;
    looks_.notify_all();
    return CurlTransfer::Instant(std::chrono::milliseconds(milliseconds_ += step_));
  }
  void advance(std::chrono::milliseconds by) { milliseconds_ += by.count(); }
  void run() { step_ = 20; }

  /// How often it has been looked at.
  int looks() const { return looks_; }
  void waitForMoreLooksThan(int looks) const {
    if (!released_) looks_.wait(looks);
  }
  /// Ends all waiting.
  void release() {
    released_ = true;
    now();
  }

 private:
  std::atomic<int> looks_ = 0;
  std::atomic<bool> released_ = false;
  std::atomic<std::int64_t> milliseconds_ = 1'000'000;
  std::atomic<int> step_ = 0;
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
      promise->set_value(
          {std::move(data), std::move(response), std::move(error), std::this_thread::get_id()});
    });
    return promise->get_future();
  }

  Outcome fetch(URLRequest request) { return start(std::move(request)).get(); }
  Outcome get(const std::string& url) { return fetch({.url = {url}}); }

  SteppedClock clock_;
  std::unique_ptr<CurlURLSession> session_ = std::make_unique<CurlURLSession>();
};

}  // namespace ovinta::platform::linux
