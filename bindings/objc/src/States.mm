#import "bindings/objc/src/Conversion.h"

using twins::toObjC;

#define OVINTA_NAMED(Enum)                                         \
  NSString* Enum##Name(Enum value) {                               \
    return toObjC(ovinta::name(static_cast<ovinta::Enum>(value))); \
  }

/// The functions that all state enumerations have.
#define OVINTA_STATE(Name)                                                             \
  OVINTA_NAMED(Name)                                                                   \
  NSNumber* Name##FromRawValue(int64_t rawValue) {                                     \
    return toObjC(ovinta::stateFromRawValue<ovinta::Name>(rawValue));                  \
  }                                                                                    \
  NSNumber* Name##FromWireString(NSString* wireString) {                               \
    return toObjC(ovinta::stateFromWireString<ovinta::Name>(twins::text(wireString))); \
  }

OVINTA_STATE(OrderState)
OVINTA_STATE(CustomerState)
OVINTA_STATE(LocationAuthStatus)

BOOL OrderStateIsOpen(OrderState state) {
  return ovinta::isOpen(static_cast<ovinta::OrderState>(state));
}

BOOL CustomerStateIsOpen(CustomerState state) {
  return ovinta::isOpen(static_cast<ovinta::CustomerState>(state));
}

NSString* CustomerStateDescription(CustomerState state) {
  return toObjC(ovinta::description(static_cast<ovinta::CustomerState>(state)));
}

NSString* LocationAuthStatusDescription(LocationAuthStatus status) {
  return toObjC(ovinta::description(static_cast<ovinta::LocationAuthStatus>(status)));
}

OVINTA_NAMED(HTTPStatusCode)

NSNumber* HTTPStatusCodeFromNumber(int number) { return toObjC(ovinta::httpStatusCode(number)); }

NSString* HTTPStatusCodeDefaultMessage(HTTPStatusCode status) {
  return toObjC(ovinta::defaultMessage(static_cast<ovinta::HTTPStatusCode>(status)));
}
