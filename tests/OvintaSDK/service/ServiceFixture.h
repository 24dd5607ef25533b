#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <semaphore>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/CurlURLSession.h"
#include "tests/OvintaSDK/api/OperationCases.h"
#include "tests/sandbox/SandboxFixture.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {

/// The system's HTTP, which tells when it is through with a request.
class ObservedURLSession : public platform::URLSession {
 public:
  void startDataTask(platform::URLRequest request, Completion completion) override;

  /// Waits until a request has ended and its completion has returned.
  void wait() { ended_.acquire(); }

  /// What was sent and answered so far: a list of {"request": {"method", "target", "headers",
  /// "body"}, "answer": {"status", "headers", "body"}}. Only while nothing is under way.
  const platform::List& exchanges() const { return exchanges_; }

  /// Takes the place of the requests' own time, which is 10 seconds.
  std::chrono::milliseconds timeout = std::chrono::seconds(10);

 private:
  std::counting_semaphore<> ended_{0};
  platform::List exchanges_;
  platform::linux::CurlURLSession session_;
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

  /// What the operation reports; absent when it is through without a word.
  std::optional<Report> run(const OperationCase& operation);

  sandbox::Sandbox service;
  std::optional<sandbox::Speaker> speaker;
  std::shared_ptr<ObservedURLSession> session = std::make_shared<ObservedURLSession>();

 private:
  int accounts_ = 0;
};

}  // namespace ovinta::test
