#include "OvintaSDK/core/Ovinta.h"

#include "OvintaSDK/core/DevelopmentPush.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/location/LocationUpdater.h"
#include "platform/Services.h"

const double OvintaSDKVersionNumber = 948.0;
const unsigned char OvintaSDKVersionString[] = "@(#)PROGRAM:OvintaSDK  PROJECT:OvintaSDK-948\n";

namespace ovinta {
namespace {

/// The service's production base URL.
constexpr std::string_view kProductionBaseURL = "https://api.ovinta.example";

/// Main thread only: the updater creates the platform's location manager there.
void registerDefaultsAndStart() {
  platform::services().settings->registerDefault(UserDefaultsKey::apiBase.rawValue(),
                                                 kProductionBaseURL);
  OvintaState::current().makeLocationUpdater();
}

}  // namespace

void Ovinta::configure(const platform::Dictionary& options) {
  const platform::Services& services = platform::services();
  services.device->setBatteryMonitoringEnabled(true);
  if (const auto* token = platform::find<std::string>(options, "token")) {
    OvintaState::current().appToken.set(*token);
  }
  if (services.mainQueue->isMain()) {
    registerDefaultsAndStart();
  } else {
    services.mainQueue->sync(registerDefaultsAndStart);
  }
}

OrdersManager& Ovinta::orders() { return OvintaState::current().orders(); }

CustomerManager& Ovinta::customer() { return OvintaState::current().customer(); }

SitesManager& Ovinta::sites() { return OvintaState::current().sites(); }

ConfigurationManager& Ovinta::config() { return OvintaState::current().config(); }

NotifyManager& Ovinta::notify() { return OvintaState::current().notify(); }

const std::string& Ovinta::sdkVersion() { return OvintaState::current().sdkVersion(); }

std::optional<std::string> Ovinta::pushToken() { return OvintaState::current().pushToken.get(); }

void Ovinta::setPushToken(std::optional<std::string> token) {
  OvintaState::current().pushToken.set(std::move(token));
}

void Ovinta::updatePushToken(std::string token) { setPushToken(std::move(token)); }

void Ovinta::updateAPNPushToken(std::span<const std::uint8_t> deviceToken) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = isDevelopmentPushEnvironment() ? "dev:" : "";
  for (const std::uint8_t byte : deviceToken) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  setPushToken(std::move(text));
}

void Ovinta::handleRemoteNotification(const platform::Dictionary& userInfo) {
  orders().updateOrderFromNotification(userInfo);
}

void Ovinta::stopLocationUpdates() {
  LocationUpdater* const updater = OvintaState::current().locationUpdater();
  if (!updater) return;
  platform::MainQueue& mainQueue = *platform::services().mainQueue;
  if (mainQueue.isMain()) {
    updater->stopTracking();
  } else {
    mainQueue.async([updater] { updater->stopTracking(); });
  }
}

}  // namespace ovinta
