#include <OvintaSDK/OvintaSDK.h>

#include <platform/linux/Linux.h>
#include <platform/simulation/Simulation.h>

// An application's own test: the library, on a simulated device.
int main() {
  namespace platform = ovinta::platform;
  platform::simulation::Simulation device(platform::linux::makeServices(), {});
  platform::install(device.services());
  ovinta::Ovinta::updatePushToken("token");
  return ovinta::Ovinta::pushToken() == "token" && OvintaSDKVersionNumber > 0 ? 0 : 1;
}
