#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::CustomerInfo;

@implementation CustomerInfo

- (instancetype)initWithName:(NSString*)name
                     carType:(NSString*)carType
                    carColor:(NSString*)carColor
                licensePlate:(NSString*)licensePlate
                       phone:(NSString*)phone {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.name = twins::text(name),
                                        .carType = twins::optionalText(carType),
                                        .carColor = twins::optionalText(carColor),
                                        .licensePlate = twins::optionalText(licensePlate),
                                        .phone = twins::optionalText(phone)});
               })];
}

OVINTA_GETTER(NSString*, name)
OVINTA_GETTER(NSString*, carType)
OVINTA_GETTER(NSString*, carColor)
OVINTA_GETTER(NSString*, licensePlate)
OVINTA_GETTER(NSString*, phone)

@end
