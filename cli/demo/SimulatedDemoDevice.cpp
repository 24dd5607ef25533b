#include "cli/demo/SimulatedDemoDevice.h"

#include <utility>

#include "cli/client/ClientServices.h"

namespace ovinta::cli {

using namespace std::chrono_literals;

SimulatedDemoDevice::SimulatedDemoDevice(DemoDeviceSetup setup)
    : interruption_(setup.interruption),
      device_(clientServices(setup.client), setup.trip.start, std::move(setup.observer)),
      player_(device_.simulation(), std::move(setup.trip), setup.seed),
      second_(wallSecond(setup.pace, player_.duration())) {}

void SimulatedDemoDevice::passSecond() {
  device_.time().advance(1s, [this] { return interruption_.happened(); });
  interruption_.happened(second_);
}

bool SimulatedDemoDevice::waitUntil(const std::function<bool()>& condition) {
  device_.time().waitUntil([&] { return condition() || interruption_.happened(); }, kPatience);
  return condition();
}

}  // namespace ovinta::cli
