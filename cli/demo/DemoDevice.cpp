#include "cli/demo/DemoDevice.h"

#include <utility>

#include "cli/demo/LinuxDemoDevice.h"
#include "cli/demo/SimulatedDemoDevice.h"

namespace ovinta::cli {

std::unique_ptr<DemoDevice> makeDemoDevice(DemoDeviceSetup setup) {
  if (setup.kind == DemoDeviceKind::linux) {
    return std::make_unique<LinuxDemoDevice>(std::move(setup));
  }
  return std::make_unique<SimulatedDemoDevice>(std::move(setup));
}

}  // namespace ovinta::cli
