#include "cli/device/NotificationLines.h"

#include <string>

#include "OvintaSDK/OvintaSDK.h"

namespace ovinta::cli {
namespace {

constexpr platform::NotificationName kObserved[] = {
    SDKNotification::ordersUpdated,
    SDKNotification::ordersError,
    SDKNotification::orderUpdated,
    SDKNotification::orderEventError,
    SDKNotification::locationAuthorizationChanged,
    SDKNotification::locationNotAuthorized,
    SDKNotification::locationAuthorizationNotDetermined,
};

std::string describe(const platform::Notification& notification) {
  const std::string name(notification.name.text);
  if (const auto* orders = notification.objectAs<OrderList>()) {
    return name + ": " + std::to_string(orders->size()) + " order(s)";
  }
  if (const auto* order = notification.objectAs<OrderPtr>()) {
    return name + ": order " + std::string(ovinta::name((*order)->state())) + ", customer " +
           std::string(ovinta::name((*order)->customerState()));
  }
  const auto* error = notification.objectAs<ErrorPtr>();
  return error && *error ? name + ": " + (*error)->errorDescription() : name;
}

}  // namespace

NotificationLines::NotificationLines(Timeline& timeline) {
  for (const platform::NotificationName name : kObserved) {
    observers_.push_back(platform::services().notificationCenter->addObserver(
        name, [&timeline](const platform::Notification& notification) {
          timeline.add("notified", describe(notification));
        }));
  }
}

}  // namespace ovinta::cli
