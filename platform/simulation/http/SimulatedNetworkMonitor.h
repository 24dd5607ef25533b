#pragma once

#include <memory>
#include <mutex>

#include "../../MainQueue.h"
#include "../../NetworkMonitor.h"

namespace ovinta::platform::simulation {

/// Tells of a network that the test switches; there is one at first. May be used from any thread,
/// and may outlive the main queue's time.
class SimulatedNetworkMonitor final : public NetworkMonitor {
 public:
  /// Calls its handler on the queue.
  explicit SimulatedNetworkMonitor(std::shared_ptr<MainQueue> mainQueue);

  void start(Handler handler) override;

  /// Has the network be there or not; a change is told. Without it no request of a `Simulation`
  /// reaches the service.
  void setAvailable(bool isAvailable);

  /// Whether the network is there.
  bool isAvailable() const;

 private:
  struct State {
    std::mutex mutex;
    Handler handler;
    bool isAvailable = true;
  };

  void tell();

  const std::shared_ptr<MainQueue> mainQueue_;
  const std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace ovinta::platform::simulation
