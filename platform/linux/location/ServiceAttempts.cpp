#include "platform/linux/location/ServiceAttempts.h"

#include <utility>

namespace ovinta::platform::linuxos {

ServiceAttempts::ServiceAttempts(std::shared_ptr<dbus::Bus> bus,
                                 std::shared_ptr<MainQueue> mainQueue, Options options,
                                 Handlers handlers)
    : mainQueue_(std::move(mainQueue)),
      retryInterval_(options.retryInterval),
      handlers_(std::move(handlers)),
      service_(std::move(bus), std::move(options.service)) {
  service_.onPresence(true, [this](bool isPresent) { notePresence(isPresent); });
}

void ServiceAttempts::begin() {
  step_ = Step::underWay;
  ++count_;
  handlers_.begin();
}

void ServiceAttempts::failed(Reason reason) {
  step_ = Step::waiting;
  wasAbsent_ = wasAbsent_ || reason == Reason::absence;
  // A service that was absent may have come meanwhile, of which there is no further word: then
  // there is another attempt.
  if (reason == Reason::lasting || (reason == Reason::absence && !isPresent_)) return;
  mainQueue_->asyncAfter(retryInterval_, lifetime_.guard([this, failed = count_] {
    if (failed == count_) begin();
  }));
}

void ServiceAttempts::notePresence(bool isPresent) {
  const bool wasPresent = std::exchange(isPresent_, isPresent);
  if (isPresent) {
    if (wasAbsent_ && step_ == Step::waiting) begin();
    return;
  }
  wasAbsent_ = true;
  if (step_ == Step::served) {
    handlers_.forget();
    begin();
  } else if (step_ == Step::underWay && wasPresent) {
    // A copy is called, because the step may destroy this object.
    const auto fail = handlers_.fail;
    fail();
  }
}

}  // namespace ovinta::platform::linuxos
