#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "../../URLSession.h"
#include "Answer.h"

namespace ovinta::platform::simulation {

/// Sends nothing: has a function answer each request. Has no thread; function and completions run
/// inside `deliverAll`, on the thread that calls it. May be used from any thread.
class AnsweringURLSession : public URLSession {
 public:
  /// Answers a request. May start further ones; must not throw.
  using Service = std::function<Answer(const URLRequest&)>;

  /// Has `service`, which must not be empty, answer.
  explicit AnsweringURLSession(Service service) : service_(std::move(service)) {}

  void startDataTask(URLRequest request, Completion completion) override;

  /// Has another function answer from now on, also the requests that already wait.
  void setService(Service service);

  /// Answers the waiting requests in the order of their start, also those that completions start,
  /// until none is left. Returns how many it answered.
  std::size_t deliverAll();

  /// All requests so far, answered or not, in the order of their start.
  std::vector<URLRequest> requests() const;

 private:
  struct Waiting {
    URLRequest request;
    Completion completion;
  };

  mutable std::mutex mutex_;
  Service service_;
  std::vector<URLRequest> requests_;
  std::deque<Waiting> waiting_;
};

}  // namespace ovinta::platform::simulation
