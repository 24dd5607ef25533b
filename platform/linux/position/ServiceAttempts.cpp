#include "platform/linux/position/ServiceAttempts.h"

#include <utility>

namespace ovinta::platform::linux {

ServiceAttempts::ServiceAttempts(std::shared_ptr<dbus::Bus> bus,
                                 std::shared_ptr<MainQueue> mainQueue, Settings settings,
                                 Steps steps)
    : mainQueue_(std::move(mainQueue)),
      retryInterval_(settings.retryInterval),
      steps_(std::move(steps)),
      service_(std::move(bus), std::move(settings.service)) {
  service_.onPresence(true, [this](bool isPresent) { notePresence(isPresent); });
}

void ServiceAttempts::begin() {
  step_ = Step::underWay;
  ++count_;
  steps_.begin();
}

void ServiceAttempts::failed(bool retries) {
  step_ = Step::waiting;
  if (!retries) return;
  mainQueue_->asyncAfter(retryInterval_, [this, life = std::weak_ptr(life_), failed = count_] {
    if (!life.expired() && failed == count_) begin();
  });
}

void ServiceAttempts::missed() {
  wasAbsent_ = true;
  // It may have come meanwhile, of which there is no further word then.
  failed(isPresent_);
}

void ServiceAttempts::notePresence(bool isPresent) {
  const bool wasPresent = std::exchange(isPresent_, isPresent);
  if (isPresent) {
    if (wasAbsent_ && step_ == Step::waiting) begin();
    return;
  }
  wasAbsent_ = true;
  if (step_ == Step::served) {
    steps_.forget();
    begin();
  } else if (step_ == Step::underWay && wasPresent) {
    // A copy: it may destroy this.
    const auto fail = steps_.fail;
    fail();
  }
}

}  // namespace ovinta::platform::linux
