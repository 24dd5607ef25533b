#pragma once

#include <memory>
#include <utility>

#include "platform/MainQueue.h"
#include "platform/URLSession.h"
#include "platform/simulation/http/SimulatedNetworkMonitor.h"

namespace ovinta::platform::simulation {

/// Sends requests over the simulated network. One that is started while the service cannot be
/// reached fails as on Linux without a route, by a task of the main queue; one whose answer comes
/// then has lost its connection. So without a network completions run on the main thread, also over
/// a base that has a callback thread of its own: it cannot be asked to run anything else there, and
/// virtual time would not wait for it. `TimeHoldingURLSession`, put around this one, has all of
/// them run in turn. May be used from any thread.
class NetworkURLSession : public URLSession {
 public:
  /// `base` sends the requests; none of the three may be null.
  NetworkURLSession(std::shared_ptr<URLSession> base,
                    std::shared_ptr<const SimulatedNetworkMonitor> network,
                    std::shared_ptr<MainQueue> mainQueue)
      : base_(std::move(base)), network_(std::move(network)), mainQueue_(std::move(mainQueue)) {}

  void startDataTask(URLRequest request, Completion completion) override;

 private:
  const std::shared_ptr<URLSession> base_;
  const std::shared_ptr<const SimulatedNetworkMonitor> network_;
  const std::shared_ptr<MainQueue> mainQueue_;
};

}  // namespace ovinta::platform::simulation
