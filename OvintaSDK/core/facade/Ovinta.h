#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "../../../platform/Export.h"
#include "../../../platform/Value.h"
#include "OvintaSDK/core/facade/ConfigurationManager.h"
#include "OvintaSDK/customer/CustomerManager.h"
#include "OvintaSDK/orders/OrdersManager.h"
#include "OvintaSDK/sites/NotifyManager.h"
#include "OvintaSDK/sites/SitesManager.h"

/// The version of this build of the library, as a number and as a text that ends with a newline;
/// constants for any thread. The version told to the service is `ovinta::Ovinta::sdkVersion()`.
extern "C" OVINTA_EXPORT const double OvintaSDKVersionNumber;
extern "C" OVINTA_EXPORT const unsigned char OvintaSDKVersionString[];

namespace ovinta {

namespace platform::simulation {
class AppTest;
}

/// The library's entry point. It works on the services of `platform::services()`, so install your
/// own before the first call. All members may be called from any thread.
class OVINTA_EXPORT Ovinta {
 public:
  Ovinta() = delete;

  /// Starts the library. Call it once, early. The option "token", a text, is the application's API
  /// token; one that is absent or no text leaves an earlier token in force, other options are
  /// ignored. Called again, it replaces the token and keeps the rest. The second half, which begins
  /// to follow the user while orders are open, runs on the main thread: a caller on another one
  /// blocks until the main queue has run it, for ever when nobody runs the main loop.
  static void configure(const platform::Dictionary& options);

  /// The managers, each made when it is first asked for; the same objects for the life of the
  /// process.
  static OrdersManager& orders();
  static CustomerManager& customer();
  static SitesManager& sites();
  static ConfigurationManager& config();
  static NotifyManager& notify();

  /// The library's version as told to the service: "CFBundleShortVersionString" of the library's
  /// bundle, read once; empty when there is none.
  static const std::string& sdkVersion();

  /// The device's push token in the form that the service expects; absent until it is set. Kept in
  /// memory only. Setting it sends nothing: see `OrdersManager::updatePushTokensWithNewPushToken`.
  static std::optional<std::string> pushToken();
  static void setPushToken(std::optional<std::string> token);

  /// The same as `setPushToken`.
  static void updatePushToken(std::string token);

  /// Sets `pushToken` from the raw bytes of a device token: lower-case hexadecimal digits, preceded
  /// by "dev:" when the application's provisioning profile, the resource "embedded.mobileprovision"
  /// of its bundle, is one for development. Reads that file.
  static void updateAPNPushToken(std::span<const std::uint8_t> deviceToken);

  /// Applies the payload of a remote notification; see
  /// `OrdersManager::updateOrderFromNotification`.
  static void handleRemoteNotification(const platform::Dictionary& userInfo);

  /// Stops following the user's location: at once on the main thread, from another one as soon as
  /// the main queue comes to it. A later `SDKNotification::ordersUpdated` with open orders starts
  /// it again.
  static void stopLocationUpdates();

 private:
  friend class platform::simulation::AppTest;

  /// Puts a new library, on the installed services, in the place of the one of the process, so that
  /// a test case starts afresh. The old one lives on for whoever still works on it.
  static void startAfresh();
};

}  // namespace ovinta
