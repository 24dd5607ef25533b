#include <OvintaSDK/OvintaSDK.h>

#include <platform/linux/Linux.h>
#include <platform/simulation/Simulation.h>
#include <platform/simulation/trip/Trip.h>

#include <variant>

// An application's own test: the library, on a simulated device. Its argument is a trip.
int main(int count, char** arguments) {
  namespace platform = ovinta::platform;
  platform::simulation::Simulation device(platform::linuxos::makeServices(), {});
  platform::install(device.services());
  ovinta::Ovinta::updatePushToken("token");

  // The text of a push, as a service of its own brings it.
  const auto push = platform::parseJSON(R"({"order_id":"7","order_state":"ready"})");
  const auto* userInfo = push ? push->as<platform::Dictionary>() : nullptr;
  if (!userInfo) return 1;
  ovinta::Ovinta::handleRemoteNotification(*userInfo);

  const auto customer = ovinta::readRecord<ovinta::CustomerInfo>(R"({"name":"Alex"})");
  const auto event = ovinta::writeRecord(ovinta::OrderEvent::rating(7, 5, "Fine"));
  if (!customer || !event || ovinta::readRecord<ovinta::Site>("{}")) return 1;
  const auto trip = platform::simulation::Trip::fromGPX(count == 2 ? arguments[1] : "");
  if (!std::holds_alternative<platform::simulation::Trip>(trip)) return 1;
  return ovinta::Ovinta::pushToken() == "token" && OvintaSDKVersionNumber > 0 ? 0 : 1;
}
