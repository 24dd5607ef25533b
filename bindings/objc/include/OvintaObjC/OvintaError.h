#import <OvintaObjC/OvintaExtern.h>

NS_ASSUME_NONNULL_BEGIN

/// The domain of all errors that reach the application. Their codes are `OvintaErrorCode`s.
OVINTA_EXTERN NSErrorDomain const OvintaErrorDomain;

/// What kind of error it is; each kind but the first has its class.
typedef NS_ENUM(NSInteger, OvintaErrorCode) {
  OvintaErrorCodeUnknown = 0,
  OvintaErrorCodeInvalidURL = 1,
  OvintaErrorCodeInvalidResponse = 2,
  OvintaErrorCodeAPI = 3,
  OvintaErrorCodeOrdersManager = 4,
  OvintaErrorCodeCustomerManager = 5,
  OvintaErrorCodeSitesManager = 6,
  OvintaErrorCodeNotifyManager = 7
};

// What the user info holds beside `NSLocalizedDescriptionKey`, each where it is known.

/// `NSString`: a short heading for an alert; always there.
OVINTA_EXTERN NSString* const OvintaErrorTitleKey;
/// `NSNumber`: the `HTTPStatusCode` of the service's answer.
OVINTA_EXTERN NSString* const OvintaErrorStatusCodeKey;
/// `NSDictionary<NSString*, NSArray<NSString*>*>`: messages by the name of the field that they are
/// about.
OVINTA_EXTERN NSString* const OvintaErrorFieldErrorsKey;
/// `NSURL`: where the application can be upgraded.
OVINTA_EXTERN NSString* const OvintaErrorAppUpgradeURLKey;
/// `NSNumber`: the type of a manager's error, e.g. an `OrdersManagerErrorType`.
OVINTA_EXTERN NSString* const OvintaErrorTypeKey;
/// `NSString`: more words on what happened.
OVINTA_EXTERN NSString* const OvintaErrorDetailKey;

/// The root of all errors that reach the application. Immutable; may be used from any thread. Two
/// are equal when class, code and user info are.
@interface OvintaError : NSError
/// What happened, in words for people; the same text as `localizedDescription`.
@property(nonatomic, readonly, copy) NSString* errorDescription;
/// A short heading for an alert.
@property(nonatomic, readonly, copy) NSString* title;
@end

/// The request's URL could not be formed.
@interface OvintaErrorInvalidURL : OvintaError
@end

/// A success answer could not be read.
@interface OvintaErrorInvalidResponse : OvintaError
@end

NS_ASSUME_NONNULL_END
