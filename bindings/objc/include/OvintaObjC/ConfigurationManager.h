#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Receives the configuration, nil when the service has none, or the error.
typedef void (^ConfigurationCallback)(NSDictionary<NSString*, id>* _Nullable configuration,
                                      OvintaError* _Nullable error);

/// Asks the service for the app's configuration; reached as `Ovinta.config`, for which every
/// instance stands. Keeps nothing.
@interface ConfigurationManager : NSObject
/// Asks for the configuration, whatever the service keeps under "data". May be called from any
/// thread and returns at once; the callback is called once, on the network's callback thread, and
/// never when no base URL is known.
- (void)fetchWithCallback:(nullable ConfigurationCallback)callback;
@end

NS_ASSUME_NONNULL_END
