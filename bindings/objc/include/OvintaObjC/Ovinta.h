#import <OvintaObjC/ConfigurationManager.h>
#import <OvintaObjC/CustomerManager.h>
#import <OvintaObjC/NotifyManager.h>
#import <OvintaObjC/OrdersManager.h>
#import <OvintaObjC/SitesManager.h>

NS_ASSUME_NONNULL_BEGIN

/// The version of this build of the library, as a number and as a text that ends with a newline;
/// constants for any thread. The version told to the service is `Ovinta.sdkVersion`.
OVINTA_EXTERN const double OvintaSDKVersionNumber;
OVINTA_EXTERN const unsigned char OvintaSDKVersionString[];

/// The library's entry point. It works on the services of the platform that are installed, so
/// install your own before the first call. All members may be called from any thread. In all
/// classes, nil for an argument that is not marked as nullable, an object of another class, or a
/// state that is none of the cases raises `NSInvalidArgumentException`. An exception that leaves a
/// block is logged and goes no further.
@interface Ovinta : NSObject
/// The managers, each made when it is first asked for; the same objects for the life of the
/// process.
@property(class, nonatomic, readonly) OrdersManager* orders;
@property(class, nonatomic, readonly) CustomerManager* customer;
@property(class, nonatomic, readonly) SitesManager* sites;
@property(class, nonatomic, readonly) ConfigurationManager* config;
@property(class, nonatomic, readonly) NotifyManager* notify;

/// The library's version as told to the service; empty when the library's bundle has none.
@property(class, nonatomic, readonly, copy) NSString* sdkVersion;

/// The device's push token in the form that the service expects; nil until it is set. Kept in
/// memory only. Setting it sends nothing.
@property(class, nonatomic, copy, nullable) NSString* pushToken;

/// Starts the library. Call it once, early. The option "token", a text, is the application's API
/// token; one that is absent or no text leaves an earlier token in force, other options are
/// ignored. Called again, it only replaces the token. The second half, which begins to follow the
/// user while orders are open, runs on the main thread: a caller on another one blocks until the
/// main queue has run it, for ever when nobody runs the main loop.
+ (void)configure:(NSDictionary<NSString*, id>*)options;

/// Sets `pushToken` to the text unchanged.
+ (void)updatePushToken:(NSString*)token;

/// Sets `pushToken` from the raw bytes of a device token: lower-case hexadecimal digits, preceded
/// by "dev:" when the application's provisioning profile, the resource "embedded.mobileprovision"
/// of its bundle, is one for development. Reads that file.
+ (void)updateAPNPushToken:(NSData*)deviceToken;

/// Applies the payload of a remote notification; see `-[OrdersManager
/// updateOrderFromNotification:]`.
+ (void)handleRemoteNotification:(NSDictionary*)userInfo;

/// Stops following the user's location: at once on the main thread, from another one as soon as the
/// main queue comes to it. A later `Ovinta.ordersUpdated` with open orders starts it again.
+ (void)stopLocationUpdates;
@end

NS_ASSUME_NONNULL_END
