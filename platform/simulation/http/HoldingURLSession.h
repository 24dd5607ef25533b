#pragma once

#include <cstddef>
#include <mutex>
#include <vector>

#include "../../URLSession.h"
#include "Answer.h"

namespace ovinta::platform::simulation {

/// Sends nothing: keeps each request until the test answers it. Has no thread; a completion runs on
/// the thread that gives the answer, inside that call. May be used from any thread.
class HoldingURLSession : public URLSession {
 public:
  void startDataTask(URLRequest request, Completion completion) override;

  /// All requests so far, answered or not, in the order of their start.
  std::vector<URLRequest> requests() const;

  /// How many requests still wait for an answer.
  std::size_t waitingCount() const;

  /// Answers the request at that position of `requests()`; the completion has returned when this
  /// does. False, and nothing happens, when there is no such request or it has its answer.
  bool answer(std::size_t index, Answer answer);

 private:
  mutable std::mutex mutex_;
  std::vector<URLRequest> requests_;
  /// One for each of `requests_`; empty once its answer was given.
  std::vector<Completion> completions_;
};

}  // namespace ovinta::platform::simulation
