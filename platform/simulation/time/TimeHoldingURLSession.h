#pragma once

#include <memory>

#include "../../URLSession.h"
#include "VirtualTime.h"

namespace ovinta::platform::simulation {

/// Has virtual time stand still from the start of a request until its completion has returned.
/// Sends one request at a time, in the order of their start, and runs the completions in turn with
/// the main thread (`TimeHold::runInTurn`): the same test gives the same requests in the same
/// order. May be used from any thread.
class TimeHoldingURLSession : public URLSession {
 public:
  /// `base`, which must not be null, sends the requests; `time` is the one that stands still.
  TimeHoldingURLSession(std::shared_ptr<URLSession> base, const VirtualTime& time);

  void startDataTask(URLRequest request, Completion completion) override;

 private:
  class Line;
  std::shared_ptr<Line> line_;
};

}  // namespace ovinta::platform::simulation
