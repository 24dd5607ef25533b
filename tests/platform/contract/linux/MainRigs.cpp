// Main queue, log and battery of this system.
#include <glib.h>
#include <unistd.h>

#include <array>
#include <fstream>

#include "platform/linux/device/SystemDevice.h"
#include "platform/linux/device/UPower.h"
#include "platform/linux/main/GLibMainQueue.h"
#include "platform/linux/main/MainThread.h"
#include "platform/linux/main/SystemLog.h"
#include "tests/platform/contract/DeviceContract.h"
#include "tests/platform/contract/LogContract.h"
#include "tests/platform/contract/MainQueueContract.h"
#include "tests/support/BusFixture.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform::contract {
namespace {

struct MainQueueRig : testing::Test {
  MainQueueRig() { linuxos::rememberMainThread(); }
  void advance(TimeInterval interval) {
    now_ += interval.count();
    // The queue looks at the time when it is given something. The second is behind what is
    // submitted by what is due.
    for (int round = 0; round < 2; ++round) {
      bool isOver = false;
      queue_->async([&] { isOver = true; });
      runUntil([&] { return isOver; });
    }
  }
  void runUntil(const std::function<bool()>& condition) {
    while (!condition()) g_main_context_iteration(nullptr, TRUE);
  }

  std::int64_t now_ = 1'000'000;
  std::shared_ptr<MainQueue> queue_ = std::make_shared<linuxos::GLibMainQueue>(
      linuxos::GLibMainQueue::Options{.now = [this] { return now_; }});
};
INSTANTIATE_TYPED_TEST_SUITE_P(GLib, MainQueueContract, MainQueueRig);

/// Standard error is a pipe.
struct LogRig : testing::Test {
  LogRig() {
    EXPECT_EQ(pipe(pipe_), 0);
    log_ = std::make_shared<linuxos::SystemLog>("test", pipe_[1]);
    reader_.open("/dev/fd/" + std::to_string(pipe_[0]));
  }
  ~LogRig() override {
    for (const int end : pipe_) close(end);
  }
  std::vector<std::string> read(std::size_t count) {
    std::vector<std::string> lines(count);
    for (auto& line : lines) std::getline(reader_, line);
    return lines;
  }

  int pipe_[2];
  std::shared_ptr<Log> log_;
  std::ifstream reader_;
};
INSTANTIATE_TYPED_TEST_SUITE_P(System, LogContract, LogRig);

/// With UPower played by a double.
struct DeviceRig : test::BusTest {
  void setBattery(BatteryState state) {
    constexpr std::array kNumbers{0U, 2U, 1U, 4U};
    upower_.change(linuxos::kUPowerDisplayDevice, linuxos::kUPowerDevice,
                   {{"State", test::dbus::write(kNumbers.at(static_cast<std::size_t>(state)))},
                    {"IsPresent", test::dbus::write(true)}});
  }
  /// The next question finds an answer that is too old.
  void waitUntil(const std::function<bool()>& condition) {
    time_.advance(std::chrono::seconds(11));
    BusTest::waitUntil(condition);
  }

  test::ServiceDouble upower_{daemon_, linuxos::kUPowerName};
  std::shared_ptr<Device> device_ =
      std::make_shared<linuxos::SystemDevice>(bus_, time_.clock(), folder_.path());
};
INSTANTIATE_TYPED_TEST_SUITE_P(UPower, DeviceContract, DeviceRig);

}  // namespace
}  // namespace ovinta::platform::contract
