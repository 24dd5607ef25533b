#pragma once

#include <memory>
#include <utility>

#include "platform/simulation/http/AnsweringURLSession.h"
#include "tests/support/WorkerThread.h"

namespace ovinta::test {

/// Has a function answer each request at once, on a thread of its own.
class PromptURLSession : public platform::URLSession {
 public:
  using Session = platform::simulation::AnsweringURLSession;

  explicit PromptURLSession(Session::Service service)
      : session_(std::make_shared<Session>(std::move(service))) {}

  void startDataTask(platform::URLRequest request, Completion completion) override {
    session_->startDataTask(std::move(request), std::move(completion));
    thread_.run([session = session_] { session->deliverAll(); });
  }

 private:
  const std::shared_ptr<Session> session_;
  WorkerThread thread_;
};

}  // namespace ovinta::test
