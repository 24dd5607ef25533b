#import <OvintaObjC/OvintaExtern.h>

NS_ASSUME_NONNULL_BEGIN

/// The domain of all errors that reach the application. Their codes are `OvintaErrorCode`s. A
/// constant, as all here; may be read from any thread.
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

/// The root of all errors that reach the application, and the class of those that no derived class
/// tells apart. Immutable; may be used from any thread. Two are equal when class, code and user
/// info are.
///
/// "The errors of a request", for every call to the service: `OvintaErrorInvalidURL`; an
/// `OvintaError` with a sentence of the URL session, when no complete answer came;
/// `OvintaAPIError`; `OvintaErrorInvalidResponse`. Their titles name the action.
@interface OvintaError : NSError
/// What happened, in words for people; the same text as `localizedDescription`.
@property(nonatomic, readonly, copy) NSString* errorDescription;
/// A short English heading for an alert: "Error", and what it is about.
@property(nonatomic, readonly, copy) NSString* title;
@end

/// A request was not sent, because the stored base URL is no URL: "invalid URL".
@interface OvintaErrorInvalidURL : OvintaError
@end

/// The service answered with success, but with a body that is not what the endpoint's answer is:
/// "invalid response".
@interface OvintaErrorInvalidResponse : OvintaError
@end

NS_ASSUME_NONNULL_END
