#import "bindings/objc/src/Conversion.h"

using twins::hold;
using twins::optionalNumber;

using Cpp = ovinta::OrderEvent;

@implementation OrderEventType

#define OVINTA_EVENT_TYPE(name)                         \
  +(NSString*)name {                                    \
    return twins::toObjC(ovinta::OrderEventType::name); \
  }

OVINTA_EVENT_TYPE(locationUpdate)
OVINTA_EVENT_TYPE(stateChange)
OVINTA_EVENT_TYPE(permissionUpdate)
OVINTA_EVENT_TYPE(customerRating)

@end

@implementation OrderEvent

- (instancetype)initWithOrderID:(int64_t)orderID
                       location:(OvintaLocation*)location
                        beacons:(NSArray*)beacons
                     etaSeconds:(NSNumber*)etaSeconds {
  return [self
      initWithHeld:twins::initialising(self, [&] {
        return hold(Cpp::locationUpdate(
            orderID, twins::object<ovinta::platform::Location>(location),
            twins::optionalList<ovinta::Beacon>(beacons), optionalNumber<double>(etaSeconds)));
      })];
}

- (instancetype)initWithOrderID:(int64_t)orderID
                  customerState:(CustomerState)customerState
                     etaSeconds:(NSNumber*)etaSeconds {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return hold(Cpp::customerStateChange(
                     orderID, twins::state<ovinta::CustomerState>(customerState),
                     optionalNumber<double>(etaSeconds)));
               })];
}

- (instancetype)initWithOrderID:(int64_t)orderID state:(OrderState)state {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return hold(Cpp::stateChange(orderID, twins::state<ovinta::OrderState>(state)));
               })];
}

- (instancetype)initWithOrderID:(int64_t)orderID
             locationAuthStatus:(LocationAuthStatus)locationAuthStatus {
  return [self initWithHeld:twins::initialising(self, [&] {
                 return hold(Cpp::permissionUpdate(
                     orderID, twins::state<ovinta::LocationAuthStatus>(locationAuthStatus)));
               })];
}

- (instancetype)initWithOrderID:(int64_t)orderID
                 customerRating:(int64_t)customerRating
               customerComments:(NSString*)customerComments {
  return [self
      initWithHeld:twins::initialising(self, [&] {
        return hold(Cpp::rating(orderID, customerRating, twins::optionalText(customerComments)));
      })];
}

OVINTA_GETTER(int64_t, orderID)
OVINTA_GETTER(NSString*, eventType)
OVINTA_GETTER(NSNumber*, longitude)
OVINTA_GETTER(NSNumber*, latitude)
OVINTA_GETTER(NSNumber*, accuracy)
OVINTA_GETTER(NSNumber*, speed)
OVINTA_GETTER(NSArray*, beacons)
OVINTA_GETTER(NSNumber*, etaSeconds)
OVINTA_GETTER(NSNumber*, customerState)
OVINTA_GETTER(NSNumber*, state)
OVINTA_GETTER(NSNumber*, locationAuthStatus)
OVINTA_GETTER(NSNumber*, customerRating)
OVINTA_GETTER(NSString*, customerComments)

@end
