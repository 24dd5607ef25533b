#import <OvintaObjC/OvintaError.h>

NS_ASSUME_NONNULL_BEGIN

/// Why nothing is armed: location services are off or the user may not be followed; there are more
/// sites than `NotifyManager.kMaxNumberOfSites`.
typedef NS_ENUM(NSInteger, NotifyManagerErrorType) {
  NotifyManagerErrorTypeNoLocationPermission = 0,
  NotifyManagerErrorTypeReachedTheMaxNumberOfSites = 1
};

/// The English message of errors of that type. May be called from any thread. A value that is none
/// of the cases ends the process.
OVINTA_EXTERN NSString* NotifyManagerErrorTypeRawValue(NotifyManagerErrorType type);

/// The notify manager refused to arm notifications.
@interface NotifyManagerError : OvintaError
/// The reason.
@property(nonatomic, readonly) NotifyManagerErrorType type;
/// More words on what happened; empty when there are none.
@property(nonatomic, readonly, copy) NSString* detail;
@end

NS_ASSUME_NONNULL_END
