#include "cli/demo/DemoDevice.h"

#include <utility>

#include "cli/demo/LinuxDemoDevice.h"
#include "cli/demo/SimulatedDemoDevice.h"

namespace ovinta::cli {

std::unique_ptr<DemoDevice> makeDemoDevice(const DemoOptions& options,
                                           platform::simulation::Trip trip,
                                           Interruption& interruption,
                                           ObservedURLSession::Observer observer) {
  if (options.device == DemoDeviceKind::linux) {
    return std::make_unique<LinuxDemoDevice>(options, std::move(trip), interruption,
                                             std::move(observer));
  }
  return std::make_unique<SimulatedDemoDevice>(options, std::move(trip), interruption,
                                               std::move(observer));
}

}  // namespace ovinta::cli
