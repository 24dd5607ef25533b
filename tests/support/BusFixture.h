#pragma once

#include <gmock/gmock.h>

#include <chrono>
#include <memory>

#include "platform/linux/dbus/Service.h"
#include "platform/simulation/RecordingLog.h"
#include "platform/simulation/time/VirtualTime.h"
#include "replay/PrivateBus.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::test {

/// A bus of the test's own, and the connection of those that are tested.
class BusTest : public testing::Test {
 protected:
  std::shared_ptr<platform::linuxos::dbus::Bus> makeBus() {
    return std::make_shared<platform::linuxos::dbus::Bus>(daemon_.address(), time_.mainQueue(),
                                                          log_);
  }

  template <class Condition>
  void waitUntil(Condition condition) {
    ASSERT_TRUE(time_.waitUntil(condition, std::chrono::seconds(30)));
  }

  /// Nothing is left to be done at a later time. What arrives just now is done first.
  void expectNoTimer() {
    waitUntil([&] { return time_.pendingTaskCount() == 0; });
  }

  /// Has all arrive that a service has sent on `bus_` so far.
  void passBy(const std::string& service) {
    bool isAnswered = false;
    platform::linuxos::dbus::Service asked(bus_, service);
    asked.getProperties("/", "none", [&](const auto&) { isAnswered = true; });
    waitUntil([&] { return isAnswered; });
  }

  replay::PrivateBus daemon_;
  TemporaryDirectory folder_;
  platform::simulation::VirtualTime time_{platform::Date{}};
  std::shared_ptr<platform::simulation::RecordingLog> log_ =
      std::make_shared<platform::simulation::RecordingLog>();
  std::shared_ptr<platform::linuxos::dbus::Bus> bus_ = makeBus();
};

}  // namespace ovinta::test
