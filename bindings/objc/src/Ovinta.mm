#import "bindings/objc/src/Blocks.h"

#import "bindings/objc/src/Notifications.h"

using twins::callLibrary;

@implementation Ovinta

/// The one twin of a manager.
#define OVINTA_MANAGER(Manager, name)                       \
  +(Manager*)name {                                         \
    static Manager* const manager = [[Manager alloc] init]; \
    callLibrary(twins::forwardNotifications);               \
    return manager;                                         \
  }

OVINTA_MANAGER(OrdersManager, orders)
OVINTA_MANAGER(CustomerManager, customer)
OVINTA_MANAGER(SitesManager, sites)
OVINTA_MANAGER(ConfigurationManager, config)
OVINTA_MANAGER(NotifyManager, notify)

+ (NSString*)sdkVersion {
  return callLibrary([] { return twins::toObjC(ovinta::Ovinta::sdkVersion()); });
}

+ (NSString*)pushToken {
  return callLibrary([] { return twins::toObjC(ovinta::Ovinta::pushToken()); });
}

+ (void)setPushToken:(NSString*)pushToken {
  callLibrary([&] { ovinta::Ovinta::setPushToken(twins::optionalText(pushToken)); });
}

+ (void)configure:(NSDictionary*)options {
  callLibrary([&] {
    twins::forwardNotifications();
    ovinta::Ovinta::configure(twins::dictionary(options));
  });
}

+ (void)updatePushToken:(NSString*)token {
  callLibrary([&] { ovinta::Ovinta::updatePushToken(twins::text(token)); });
}

+ (void)updateAPNPushToken:(NSData*)deviceToken {
  twins::requireClass(deviceToken, [NSData class]);
  const auto* const bytes = static_cast<const std::uint8_t*>([deviceToken bytes]);
  callLibrary([&] { ovinta::Ovinta::updateAPNPushToken({bytes, [deviceToken length]}); });
}

+ (void)handleRemoteNotification:(NSDictionary*)userInfo {
  callLibrary([&] { ovinta::Ovinta::handleRemoteNotification(twins::dictionary(userInfo)); });
}

+ (void)stopLocationUpdates {
  callLibrary([] { ovinta::Ovinta::stopLocationUpdates(); });
}

@end
