#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Receives the configuration, nil when the service has none, or the error.
typedef void (^ConfigurationCallback)(NSDictionary<NSString*, id>* _Nullable configuration,
                                      OvintaError* _Nullable error);

/// Asks the service for the app's configuration; reached as `Ovinta.config`, for which every
/// instance stands. Keeps nothing.
@interface ConfigurationManager : NSObject
/// Asks for the configuration, whatever the service keeps under "data". May be called from any
/// thread and returns at once; the callback is called at most once: on the network's callback
/// thread when the service was asked, on a thread of the API queue when the base URL is none. It is
/// left out when no base URL is known, and where a URL session of the application's own, installed
/// in C++, completes a success without data.
- (void)fetchWithCallback:(nullable ConfigurationCallback)callback;
@end

NS_ASSUME_NONNULL_END
