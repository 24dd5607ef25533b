#import <OvintaObjC/CustomerManager.h>
#import <OvintaObjC/NotificationInfo.h>
#import <OvintaObjC/NotifyManagerError.h>
#import <OvintaObjC/SitesManager.h>

NS_ASSUME_NONNULL_BEGIN

/// Arranges local notifications that fire once, when the user enters the geofence of a site;
/// reached as `Ovinta.notify`, for which every instance stands. What is armed is kept by the
/// platform's notification centre, also across restarts. All methods may be called from any thread
/// and return at once; callbacks, which may be nil, run inside the call when the request is refused
/// at once, otherwise on the thread on which the notification centre or the URL session answers.
/// They must not wait for what a later call does.
@interface NotifyManager : NSObject
/// The key in a notification's user info that marks the library's own, and its value there.
@property(class, nonatomic, readonly, copy) NSString* kSourceName;
@property(class, nonatomic, readonly, copy) NSString* kOvintaNotify;
/// The most sites that one call may arm.
@property(class, nonatomic, readonly) NSUInteger kMaxNumberOfSites;

/// Arms a notification for each site that has a geofence with numbers for a centre, in place of all
/// armed before; other sites are passed over. The callback is called exactly once: with nil when
/// the requests were handed over (one that the notification centre does not accept is told in the
/// log alone), or with the error: `NotifyManagerError` of type `NoLocationPermission` or
/// `ReachedTheMaxNumberOfSites`; what was armed then stays.
- (void)createForSites:(NSArray<Site*>*)sites
          notification:(NotificationInfo*)notification
              callback:(nullable ErrorCallback)callback;

/// Arms notifications for the first `kMaxNumberOfSites` sites that the service finds in the circle,
/// which also become `Ovinta.sites.all`. The callback receives the sites or the error, and is left
/// out where that of a `SitesManager` is. When arming them fails it is called twice: first with the
/// error, then with the sites. Errors: those of `createForSites:notification:callback:` and of the
/// sites manager.
- (void)createForSitesInRegion:(OvintaCircularRegion*)region
                  notification:(NotificationInfo*)notification
                      callback:(nullable SitesCallback)callback;

/// Disarms all. Notifications already shown stay. The callback is called exactly once, with nil.
- (void)clearWithCallback:(nullable ErrorCallback)callback;

/// Whether the user info of a notification shows that it is one of the library's own.
- (BOOL)isOvintaNotifyUserInfo:(NSDictionary*)userInfo;
@end

NS_ASSUME_NONNULL_END
