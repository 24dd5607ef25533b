#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::UserDefaultsKey;

@implementation UserDefaultsKey

#define OVINTA_KEY(name)             \
  +(UserDefaultsKey*)name {          \
    return twins::toObjC(Cpp::name); \
  }

OVINTA_KEY(customerToken)
OVINTA_KEY(customerName)
OVINTA_KEY(customerEmail)
OVINTA_KEY(customerVehicleType)
OVINTA_KEY(customerVehicleColor)
OVINTA_KEY(customerLicensePlate)
OVINTA_KEY(customerPhone)
OVINTA_KEY(apiBase)
OVINTA_KEY(lastKnownAuthStatus)

- (instancetype)initWithRawValue:(NSString*)rawValue {
  if (const auto key = Cpp::fromRawValue(twins::text(rawValue))) {
    return [self initWithNative:twins::wrap(*key)];
  }
  [self release];
  return nil;
}

OVINTA_GETTER(NSString*, rawValue)

- (NSString*)stringValue {
  return twins::callLibrary([&] { return twins::toObjC(twins::object<Cpp>(self).stringValue()); });
}

- (BOOL)boolValue {
  return twins::callLibrary([&] { return twins::object<Cpp>(self).boolValue(); });
}

- (void)setWithValue:(NSString*)value {
  twins::callLibrary([&] { twins::object<Cpp>(self).set(twins::optionalText(value)); });
}

- (void)setWithBool:(BOOL)value {
  twins::callLibrary([&] { twins::object<Cpp>(self).setBool(value); });
}

- (void)delete {
  twins::callLibrary([&] { twins::object<Cpp>(self).remove(); });
}

@end
