#import <OvintaObjC/Ovinta+Notifications.h>

#include <array>
#include <atomic>
#include <mutex>

#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Conversion.h"
#import "bindings/objc/src/Notifications.h"

namespace platform = ovinta::platform;
using ovinta::SDKNotification;

namespace {

using ObjectOf = id (*)(const platform::Notification&);

struct Row {
  platform::NotificationName name;
  ObjectOf objectOf;
};

id noObject(const platform::Notification&) { return nil; }

template <class T>
id objectAs(const platform::Notification& notification) {
  const T* const object = notification.objectAs<T>();
  return object ? twins::toObjC(*object) : nil;
}

/// What the library posts, and as what.
constexpr std::array<Row, 8> kRows{{
    {SDKNotification::ordersUpdated, objectAs<ovinta::OrderList>},
    {SDKNotification::ordersError, objectAs<ovinta::ErrorPtr>},
    {SDKNotification::orderUpdated, objectAs<ovinta::OrderPtr>},
    {SDKNotification::orderEventError, objectAs<ovinta::ErrorPtr>},
    {SDKNotification::locationUpdate, objectAs<platform::Location>},
    {SDKNotification::locationAuthorizationNotDetermined, noObject},
    {SDKNotification::locationNotAuthorized, noObject},
    {SDKNotification::locationAuthorizationChanged, noObject},
}};

void post(const platform::Notification& notification, ObjectOf objectOf) {
  twins::callApplication([&] {
    [[NSNotificationCenter defaultCenter] postNotificationName:twins::toObjC(notification.name.text)
                                                        object:objectOf(notification)];
  });
}

struct Forwarding {
  /// The centre that is listened to; services, once installed, are kept for ever.
  std::atomic<const platform::NotificationCenter*> center = nullptr;
  std::mutex mutex;
  std::array<std::unique_ptr<platform::NotificationObserver>, kRows.size()> observers;
};

}  // namespace

namespace twins {

void forwardNotifications() {
  static auto& forwarding = *new Forwarding;
  const auto& center = platform::services().notificationCenter;
  if (forwarding.center == center.get()) return;
  const std::lock_guard lock(forwarding.mutex);
  if (forwarding.center == center.get()) return;
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    forwarding.observers[i] = center->addObserver(
        kRows[i].name, [objectOf = kRows[i].objectOf](const platform::Notification& notification) {
          post(notification, objectOf);
        });
  }
  forwarding.center = center.get();
}

}  // namespace twins

@implementation Ovinta (Notifications)

#define OVINTA_NAME(name)                             \
  +(NSNotificationName)name {                         \
    twins::callLibrary(twins::forwardNotifications);  \
    return twins::toObjC(SDKNotification::name.text); \
  }

OVINTA_NAME(ordersUpdated)
OVINTA_NAME(ordersError)
OVINTA_NAME(orderUpdated)
OVINTA_NAME(orderEventError)
OVINTA_NAME(locationUpdate)
OVINTA_NAME(locationAuthorizationNotDetermined)
OVINTA_NAME(locationNotAuthorized)
OVINTA_NAME(locationAuthorizationChanged)

@end
