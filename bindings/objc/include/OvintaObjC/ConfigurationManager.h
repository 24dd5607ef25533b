#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Receives the configuration, nil when the service has none, or the error: a nil error is a
/// success.
typedef void (^ConfigurationCallback)(NSDictionary<NSString*, id>* _Nullable configuration,
                                      OvintaError* _Nullable error);

/// Asks the service for the app's configuration; reached as `Ovinta.config`, for which every
/// instance stands. Keeps nothing.
@interface ConfigurationManager : NSObject
/// Asks for the configuration, whatever the service keeps under "data". May be called from any
/// thread and returns at once; the callback, which may be nil, is called at most once: on the
/// callback thread of the URL session when the service was asked, on a thread of the API queue when
/// the stored base URL is no URL. It is left out when no base URL is stored, and where a URL
/// session of the application's own, installed in C++, completes a success without data. Errors:
/// those of a request (see `OvintaError`).
- (void)fetchWithCallback:(nullable ConfigurationCallback)callback;
@end

NS_ASSUME_NONNULL_END
