#import <OvintaObjC/OvintaExtern.h>

NS_ASSUME_NONNULL_BEGIN

/// Where the customer stands on the way to the pickup. The functions may be called from any thread.
typedef NS_ENUM(NSInteger, CustomerState) {
  CustomerStateCreated = 0,
  CustomerStateEnRoute = 1,
  CustomerStateNearby = 2,
  CustomerStateArrived = 3,
  CustomerStateWaiting = 4,
  CustomerStateCompleted = 5
};

/// Whether the customer's journey still goes on: in every state but the completed one. A value that
/// is none of the cases ends the process, here as in the next function.
OVINTA_EXTERN BOOL CustomerStateIsOpen(CustomerState state);
/// An English title for people, e.g. "En Route".
OVINTA_EXTERN NSString* CustomerStateDescription(CustomerState state);
/// The name of the state for logs, as in JSON; "invalid" for a value that is none of the cases.
OVINTA_EXTERN NSString* CustomerStateName(CustomerState state);
/// The state with that raw value; nil when there is none.
OVINTA_EXTERN NSNumber* _Nullable CustomerStateFromRawValue(int64_t rawValue);
/// The state with that wire string, compared exactly; nil when there is none.
OVINTA_EXTERN NSNumber* _Nullable CustomerStateFromWireString(NSString* wireString);

NS_ASSUME_NONNULL_END
