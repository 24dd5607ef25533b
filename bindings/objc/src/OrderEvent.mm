#import "bindings/objc/src/Conversion.h"

using twins::wrap;

using Cpp = ovinta::OrderEvent;

/// The number in its own type: not every whole one is a real one.
static ovinta::EtaSeconds estimate(NSNumber* seconds) {
  if (!seconds) return {};
  switch (*[twins::requireClass(seconds, [NSNumber class]) objCType]) {
    case 'f':
    case 'd':
      return [seconds doubleValue];
    case 'L':
    case 'Q':
      return [seconds unsignedLongLongValue];
    default:
      return [seconds longLongValue];
  }
}

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
                  customerState:(CustomerState)customerState
                     etaSeconds:(NSNumber*)etaSeconds {
  return [self
      initWithNative:twins::initialising(self, [&] {
        return wrap(Cpp::customerStateChange(
            orderID, twins::state<ovinta::CustomerState>(customerState), estimate(etaSeconds)));
      })];
}

- (instancetype)initWithOrderID:(int64_t)orderID state:(OrderState)state {
  return [self initWithNative:twins::initialising(self, [&] {
                 return wrap(Cpp::stateChange(orderID, twins::state<ovinta::OrderState>(state)));
               })];
}

- (instancetype)initWithOrderID:(int64_t)orderID
             locationAuthStatus:(LocationAuthStatus)locationAuthStatus {
  return [self initWithNative:twins::initialising(self, [&] {
                 return wrap(Cpp::permissionUpdate(
                     orderID, twins::state<ovinta::LocationAuthStatus>(locationAuthStatus)));
               })];
}

- (instancetype)initWithOrderID:(int64_t)orderID
                 customerRating:(int64_t)customerRating
               customerComments:(NSString*)customerComments {
  return [self
      initWithNative:twins::initialising(self, [&] {
        return wrap(Cpp::rating(orderID, customerRating, twins::optionalText(customerComments)));
      })];
}

/// The members of an event are views, to which nothing can point.
#define OVINTA_EVENT_GETTER(Type, name)                                     \
  -(Type)name {                                                             \
    return static_cast<Type>(twins::toObjC(twins::object<Cpp>(self).name)); \
  }

OVINTA_EVENT_GETTER(int64_t, orderID)
OVINTA_EVENT_GETTER(NSString*, eventType)
OVINTA_EVENT_GETTER(NSNumber*, longitude)
OVINTA_EVENT_GETTER(NSNumber*, latitude)
OVINTA_EVENT_GETTER(NSNumber*, accuracy)
OVINTA_EVENT_GETTER(NSNumber*, speed)
OVINTA_EVENT_GETTER(NSArray*, beacons)
OVINTA_EVENT_GETTER(NSNumber*, etaSeconds)
OVINTA_EVENT_GETTER(NSNumber*, customerState)
OVINTA_EVENT_GETTER(NSNumber*, state)
OVINTA_EVENT_GETTER(NSNumber*, locationAuthStatus)
OVINTA_EVENT_GETTER(NSNumber*, customerRating)
OVINTA_EVENT_GETTER(NSString*, customerComments)

@end
