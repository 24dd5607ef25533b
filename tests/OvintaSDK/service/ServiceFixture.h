#pragma once

#include <condition_variable>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/http/CurlURLSession.h"
#include "tests/OvintaSDK/api/OperationCases.h"
#include "tests/sandbox/SandboxFixture.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/SteppedClock.h"

namespace ovinta::test {

/// The system's HTTP, which tells when it is through with a request. Its time stands still.
class ObservedURLSession : public platform::URLSession {
 public:
  /// `caFile`: the certificates to trust instead of the system's.
  explicit ObservedURLSession(std::optional<std::filesystem::path> caFile = {});

  void startDataTask(platform::URLRequest request, Completion completion) override;

  /// Waits until a request has ended and its completion has returned.
  void wait() { ended_.acquire(); }

  /// Lets time pass until the same; false when it does not happen.
  bool waitOut();

  /// What was sent and answered so far: a list of {"request": {"method", "target", "headers",
  /// "body"}, "answer": {"status", "headers", "body"}}. Only while nothing is under way.
  const platform::List& exchanges() const { return exchanges_; }

 private:
  std::counting_semaphore<> ended_{0};
  platform::List exchanges_;
  SteppedClock clock_;
  platform::linuxos::CurlURLSession session_;
};

/// Counts the requests of apps that a sandbox has seen to their end.
class AppRequests {
 public:
  void add(const sandbox::AnsweredRequest& request) {
    if (!request.target.starts_with("/m/")) return;
    const std::lock_guard lock(mutex_);
    ++count_;
    changed_.notify_all();
  }
  void clear() {
    const std::lock_guard lock(mutex_);
    count_ = 0;
  }
  /// Waits until there are that many at least, and says how many there are.
  std::size_t waitFor(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return count_ >= count; });
    return count_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t count_ = 0;
};

/// The library over real HTTP against a sandbox of its own.
class ServiceFixture : public SDKFixture {
 protected:
  struct Report {
    bool hasResult = false;
    ErrorPtr error = nullptr;
  };

  ServiceFixture();

  /// Readies the sandbox for the operations: what they are about is there.
  OperationInputs makeInputs();

  /// The operation of that name with inputs that the sandbox accepts.
  OperationCase soundCase(const std::string& name);

  using Reports = std::shared_ptr<std::vector<Report>>;

  /// Has the operation ask the service, which is elsewhere where `baseURL` says so.
  Reports start(const OperationCase& operation, const std::string& baseURL) const;

  /// What the operation reports; absent when it is through without a word.
  std::optional<Report> run(const OperationCase& operation);

  /// Those since the fixture was made, or since they were cleared.
  AppRequests requests;
  sandbox::Sandbox service{
      {.onRequest = [this](const sandbox::AnsweredRequest& request) { requests.add(request); }}};
  std::optional<sandbox::Speaker> speaker;
  /// That of the customer of the last inputs.
  std::string customerToken;
  std::shared_ptr<ObservedURLSession> session = std::make_shared<ObservedURLSession>();

 private:
  int accounts_ = 0;
};

}  // namespace ovinta::test
