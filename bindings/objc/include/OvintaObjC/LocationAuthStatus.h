#import <OvintaObjC/OvintaExtern.h>

NS_ASSUME_NONNULL_BEGIN

/// The location permission that the customer has granted to the application. The functions may be
/// called from any thread.
typedef NS_ENUM(NSInteger, LocationAuthStatus) {
  LocationAuthStatusNotDetermined = 0,
  LocationAuthStatusRestricted = 1,
  LocationAuthStatusDenied = 2,
  LocationAuthStatusAuthorizedAlways = 3,
  LocationAuthStatusAuthorizedWhenInUse = 4
};

/// The text that stands for the status in JSON, e.g. "authorized_always". A value that is none of
/// the cases ends the process.
OVINTA_EXTERN NSString* LocationAuthStatusDescription(LocationAuthStatus status);
/// The name of the status for logs, as in JSON; "invalid" for a value that is none of the cases.
OVINTA_EXTERN NSString* LocationAuthStatusName(LocationAuthStatus status);
/// The status with that raw value; nil when there is none.
OVINTA_EXTERN NSNumber* _Nullable LocationAuthStatusFromRawValue(int64_t rawValue);
/// The status with that wire string, compared exactly; nil when there is none.
OVINTA_EXTERN NSNumber* _Nullable LocationAuthStatusFromWireString(NSString* wireString);

NS_ASSUME_NONNULL_END
