#import "bindings/objc/src/Conversion.h"

using twins::optionalText;
using twins::text;

using Cpp = ovinta::ClaimOrderInfo;

@implementation ClaimOrderInfo

- (instancetype)initWithCustomerCarColor:(NSString*)customerCarColor
                         customerCarType:(NSString*)customerCarType
                    customerLicensePlate:(NSString*)customerLicensePlate
                            customerName:(NSString*)customerName
                           customerPhone:(NSString*)customerPhone
                               pushToken:(NSString*)pushToken {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.customerCarColor = optionalText(customerCarColor),
                                        .customerCarType = optionalText(customerCarType),
                                        .customerLicensePlate = optionalText(customerLicensePlate),
                                        .customerName = optionalText(customerName),
                                        .customerPhone = optionalText(customerPhone),
                                        .pushToken = text(pushToken)});
               })];
}

- (instancetype)initWithCustomerInfo:(CustomerInfo*)customerInfo
                           pushToken:(NSString*)pushToken
                          pickupType:(NSString*)pickupType {
  return [self
      initWithNative:twins::initialising(self, [&] {
        return twins::wrap(Cpp::withCustomerInfo(twins::object<ovinta::CustomerInfo>(customerInfo),
                                                 text(pushToken), optionalText(pickupType)));
      })];
}

OVINTA_GETTER(NSString*, customerCarColor)
OVINTA_GETTER(NSString*, customerCarType)
OVINTA_GETTER(NSString*, customerLicensePlate)
OVINTA_GETTER(NSString*, customerName)
OVINTA_GETTER(NSString*, customerPhone)

- (NSString*)pushToken {
  return twins::toObjC(twins::object<Cpp>(self).pushToken.get());
}

OVINTA_GETTER(NSString*, pickupType)

@end
