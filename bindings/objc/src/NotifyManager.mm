#import "bindings/objc/src/Blocks.h"

using Cpp = ovinta::NotifyManager;
using twins::callback;
using twins::callLibrary;
using twins::object;

static ovinta::NotifyManager& manager() { return ovinta::Ovinta::notify(); }

@implementation NotifyManager

+ (NSString*)kSourceName {
  return twins::toObjC(Cpp::kSourceName);
}

+ (NSString*)kOvintaNotify {
  return twins::toObjC(Cpp::kOvintaNotify);
}

+ (NSUInteger)kMaxNumberOfSites {
  return Cpp::kMaxNumberOfSites;
}

- (void)createForSites:(NSArray*)sites
          notification:(NotificationInfo*)notification
              callback:(ErrorCallback)block {
  twins::requireClass(sites, [NSArray class]);
  callLibrary([&] {
    manager().createForSites(*twins::optionalList<ovinta::Site>(sites),
                             object<ovinta::NotificationInfo>(notification),
                             callback<ovinta::ErrorCallback>(block));
  });
}

- (void)createForSitesInRegion:(OvintaCircularRegion*)region
                  notification:(NotificationInfo*)notification
                      callback:(SitesCallback)block {
  callLibrary([&] {
    manager().createForSitesInRegion(object<ovinta::platform::CircularRegion>(region),
                                     object<ovinta::NotificationInfo>(notification),
                                     callback<ovinta::SitesCallback>(block));
  });
}

- (void)clearWithCallback:(ErrorCallback)block {
  callLibrary([&] { manager().clear(callback<ovinta::ErrorCallback>(block)); });
}

- (BOOL)isOvintaNotifyUserInfo:(NSDictionary*)userInfo {
  return callLibrary([&] { return manager().isOvintaNotifyUserInfo(twins::dictionary(userInfo)); });
}

@end
