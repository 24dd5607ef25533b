#include "OvintaSDK/core/facade/Ovinta.h"

#include "OvintaSDK/core/DevelopmentPush.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/location/LocationUpdater.h"
#include "platform/Services.h"

const double OvintaSDKVersionNumber = 948.0;
const unsigned char OvintaSDKVersionString[] = "@(#)PROGRAM:OvintaSDK  PROJECT:OvintaSDK-948\n";

namespace ovinta {
namespace {

/// The service's production base URL.
constexpr std::string_view kProductionBaseURL = "https://api.ovinta.example";

/// Runs on the main thread only, because the updater creates the platform's location manager there.
void registerDefaultsAndStart() {
  platform::services().settings->registerDefault(UserDefaultsKey::apiBase.rawValue(),
                                                 kProductionBaseURL);
  Library::process().makeLocationUpdater();
}

}  // namespace

void Ovinta::configure(const platform::Dictionary& options) {
  const platform::Services& services = platform::services();
  services.device->setBatteryMonitoringEnabled(true);
  if (const auto* token = platform::find<std::string>(options, "token")) {
    Library::process().context()->appToken.set(*token);
  }
  if (services.mainQueue->isMain()) {
    registerDefaultsAndStart();
  } else {
    services.mainQueue->sync(registerDefaultsAndStart);
  }
}

OrdersManager& Ovinta::orders() { return Library::process().orders(); }

CustomerManager& Ovinta::customer() { return Library::process().customer(); }

SitesManager& Ovinta::sites() { return Library::process().sites(); }

ConfigurationManager& Ovinta::config() { return Library::process().config(); }

NotifyManager& Ovinta::notify() { return Library::process().notify(); }

const std::string& Ovinta::sdkVersion() { return Library::process().context()->sdkVersion(); }

std::optional<std::string> Ovinta::pushToken() {
  return Library::process().context()->pushToken.get();
}

void Ovinta::setPushToken(std::optional<std::string> token) {
  Library::process().context()->pushToken.set(std::move(token));
}

void Ovinta::updatePushToken(std::string token) { setPushToken(std::move(token)); }

void Ovinta::updateAPNPushToken(std::span<const std::uint8_t> deviceToken) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = isDevelopmentPushEnvironment(*platform::services().mainBundle) ? "dev:" : "";
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
  LocationUpdater* const updater = Library::process().locationUpdater();
  if (!updater) return;
  platform::MainQueue& mainQueue = *platform::services().mainQueue;
  if (mainQueue.isMain()) {
    updater->stopTracking();
  } else {
    mainQueue.async([updater] { updater->stopTracking(); });
  }
}

void Ovinta::startAfresh() { Library::replaceProcess(); }

}  // namespace ovinta
