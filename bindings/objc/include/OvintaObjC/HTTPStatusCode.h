#import <OvintaObjC/OvintaExtern.h>

NS_ASSUME_NONNULL_BEGIN

/// The statuses that the service uses, with their numbers in HTTP (RFC 9110); that of a required
/// upgrade is the service's own choice. The functions may be called from any thread.
typedef NS_ENUM(NSInteger, HTTPStatusCode) {
  HTTPStatusCodeOk = 200,
  HTTPStatusCodeAccepted = 202,
  HTTPStatusCodeNoContent = 204,
  HTTPStatusCodeUnauthorized = 401,
  HTTPStatusCodeNotFound = 404,
  HTTPStatusCodeGone = 410,
  HTTPStatusCodeUnprocessableEntity = 422,
  HTTPStatusCodeAppUpgradeRequired = 425
};

/// The status with that number; nil when the service does not use it.
OVINTA_EXTERN NSNumber* _Nullable HTTPStatusCodeFromNumber(int number);
/// The name of the status for logs, e.g. "not found"; "invalid" for a value that is none of the
/// cases.
OVINTA_EXTERN NSString* HTTPStatusCodeName(HTTPStatusCode status);
/// The English message for an answer of that status without a readable body; nil when there is
/// none.
OVINTA_EXTERN NSString* _Nullable HTTPStatusCodeDefaultMessage(HTTPStatusCode status);

NS_ASSUME_NONNULL_END
