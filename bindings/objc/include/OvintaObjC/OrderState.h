#import <OvintaObjC/OvintaExtern.h>

NS_ASSUME_NONNULL_BEGIN

/// The state of an order as the store sees it; it is gone when the service has answered an event
/// that it does not have the order. The functions may be called from any thread.
typedef NS_ENUM(NSInteger, OrderState) {
  OrderStateCreated = 0,
  OrderStateReady = 1,
  OrderStateDelayed = 2,
  OrderStateCancelled = 3,
  OrderStateCompleted = 4,
  OrderStateGone = 5
};

/// Whether the store still works towards the pickup: created, ready and delayed. A value that is
/// none of the cases ends the process.
OVINTA_EXTERN BOOL OrderStateIsOpen(OrderState state);
/// The name of the state for logs, as in JSON; "invalid" for a value that is none of the cases.
OVINTA_EXTERN NSString* OrderStateName(OrderState state);
/// The state with that raw value; nil when there is none.
OVINTA_EXTERN NSNumber* _Nullable OrderStateFromRawValue(int64_t rawValue);
/// The state with that wire string, compared exactly; nil when there is none.
OVINTA_EXTERN NSNumber* _Nullable OrderStateFromWireString(NSString* wireString);

NS_ASSUME_NONNULL_END
