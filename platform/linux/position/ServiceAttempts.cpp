#include "platform/linux/position/ServiceAttempts.h"

#include <utility>

namespace ovinta::platform::linux {

ServiceAttempts::ServiceAttempts(std::shared_ptr<dbus::Bus> bus,
                                 std::shared_ptr<MainQueue> mainQueue, Settings settings,
                                 std::function<void()> begin, std::function<void()> forget)
    : mainQueue_(std::move(mainQueue)),
      retryInterval_(settings.retryInterval),
      begin_(std::move(begin)),
      forget_(std::move(forget)),
      service_(std::move(bus), std::move(settings.service)) {
  service_.onPresence(true, [this](bool isPresent) { notePresence(isPresent); });
}

void ServiceAttempts::begin() {
  step_ = Step::underWay;
  begin_();
}

void ServiceAttempts::failed(bool retries) {
  step_ = Step::waiting;
  if (!retries) return;
  mainQueue_->asyncAfter(retryInterval_, [this, life = std::weak_ptr(life_)] {
    if (!life.expired() && step_ == Step::waiting) begin();
  });
}

void ServiceAttempts::missed() {
  wasAbsent_ = true;
  // It may have come meanwhile, of which there is no further word then.
  failed(isPresent_);
}

void ServiceAttempts::notePresence(bool isPresent) {
  isPresent_ = isPresent;
  if (isPresent) {
    if (wasAbsent_ && step_ == Step::waiting) begin();
    return;
  }
  wasAbsent_ = true;
  // An attempt under way fails by itself.
  if (step_ != Step::served) return;
  forget_();
  begin();
}

}  // namespace ovinta::platform::linux
