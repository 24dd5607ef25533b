#include "cli/demo/SimulatedDemoDevice.h"

#include <utility>

#include "cli/client/ClientServices.h"

namespace ovinta::cli {

using namespace std::chrono_literals;

SimulatedDemoDevice::SimulatedDemoDevice(const DemoOptions& options,
                                         platform::simulation::Trip trip,
                                         Interruption& interruption,
                                         ObservedURLSession::Observer observer)
    : interruption_(interruption),
      device_(clientServices(options.service), trip.start, std::move(observer)),
      player_(device_.simulation(), std::move(trip), options.trip.seed),
      second_(wallSecond(options.trip.pace, player_.duration())) {}

void SimulatedDemoDevice::passSecond() {
  device_.time().advance(1s, [this] { return interruption_.happened(); });
  interruption_.happened(second_);
}

bool SimulatedDemoDevice::waitUntil(const std::function<bool()>& condition) {
  device_.time().waitUntil([&] { return condition() || interruption_.happened(); }, kPatience);
  return condition();
}

}  // namespace ovinta::cli
