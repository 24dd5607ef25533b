#include "platform/simulation/http/SimulatedNetworkMonitor.h"

#include <utility>

namespace ovinta::platform::simulation {

SimulatedNetworkMonitor::SimulatedNetworkMonitor(std::shared_ptr<MainQueue> mainQueue)
    : mainQueue_(std::move(mainQueue)) {}

void SimulatedNetworkMonitor::start(Handler handler) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->handler = std::move(handler);
  }
  tell();
}

void SimulatedNetworkMonitor::setAvailable(bool isAvailable) {
  {
    const std::lock_guard lock(state_->mutex);
    if (std::exchange(state_->isAvailable, isAvailable) == isAvailable) return;
    if (!state_->handler) return;
  }
  tell();
}

bool SimulatedNetworkMonitor::isAvailable() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isAvailable;
}

void SimulatedNetworkMonitor::tell() {
  mainQueue_->async([weak = std::weak_ptr(state_), isAvailable = isAvailable()] {
    const auto state = weak.lock();
    if (!state) return;
    std::unique_lock lock(state->mutex);
    const Handler handler = state->handler;
    lock.unlock();
    handler(isAvailable);
  });
}

}  // namespace ovinta::platform::simulation
