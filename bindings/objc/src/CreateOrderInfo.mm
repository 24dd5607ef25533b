#import "bindings/objc/src/Conversion.h"

using twins::object;
using twins::optionalText;
using twins::text;

using Cpp = ovinta::CreateOrderInfo;

@implementation CreateOrderInfo

- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
              customerCarColor:(NSString*)customerCarColor
               customerCarType:(NSString*)customerCarType
          customerLicensePlate:(NSString*)customerLicensePlate
                  customerName:(NSString*)customerName
                 customerPhone:(NSString*)customerPhone
                     pushToken:(NSString*)pushToken
                         state:(OrderState)state
                  pickupWindow:(PickupWindow*)pickupWindow {
  self = [self initWithSiteID:siteID
            partnerIdentifier:partnerIdentifier
             customerCarColor:customerCarColor
              customerCarType:customerCarType
         customerLicensePlate:customerLicensePlate
                 customerName:customerName
                customerPhone:customerPhone
                    pushToken:pushToken
                 pickupWindow:pickupWindow];
  twins::initialising(self,
                      [&] { object<Cpp>(self).state = twins::state<ovinta::OrderState>(state); });
  return self;
}

- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
              customerCarColor:(NSString*)customerCarColor
               customerCarType:(NSString*)customerCarType
          customerLicensePlate:(NSString*)customerLicensePlate
                  customerName:(NSString*)customerName
                 customerPhone:(NSString*)customerPhone
                     pushToken:(NSString*)pushToken
                  pickupWindow:(PickupWindow*)pickupWindow {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{
                     .siteID = siteID,
                     .partnerIdentifier = text(partnerIdentifier),
                     .customerCarColor = optionalText(customerCarColor),
                     .customerCarType = optionalText(customerCarType),
                     .customerLicensePlate = optionalText(customerLicensePlate),
                     .customerName = optionalText(customerName),
                     .customerPhone = optionalText(customerPhone),
                     .pushToken = optionalText(pushToken),
                     .pickupWindow = twins::optionalObject<ovinta::PickupWindow>(pickupWindow)});
               })];
}

- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
                  customerInfo:(CustomerInfo*)customerInfo
                     pushToken:(NSString*)pushToken
                         state:(OrderState)state
                  pickupWindow:(PickupWindow*)pickupWindow {
  self = [self initWithSiteID:siteID
            partnerIdentifier:partnerIdentifier
                 customerInfo:customerInfo
                    pushToken:pushToken
                 pickupWindow:pickupWindow];
  twins::initialising(self,
                      [&] { object<Cpp>(self).state = twins::state<ovinta::OrderState>(state); });
  return self;
}

- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
                  customerInfo:(CustomerInfo*)customerInfo
                     pushToken:(NSString*)pushToken
                  pickupWindow:(PickupWindow*)pickupWindow {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp::withCustomerInfo(
                     siteID, text(partnerIdentifier), object<ovinta::CustomerInfo>(customerInfo),
                     optionalText(pushToken), std::nullopt,
                     twins::optionalObject<ovinta::PickupWindow>(pickupWindow)));
               })];
}

OVINTA_GETTER(int64_t, siteID)
OVINTA_GETTER(NSString*, partnerIdentifier)
OVINTA_GETTER(NSString*, customerCarColor)
OVINTA_GETTER(NSString*, customerCarType)
OVINTA_GETTER(NSString*, customerLicensePlate)
OVINTA_GETTER(NSString*, customerName)
OVINTA_GETTER(NSString*, customerPhone)
OVINTA_GETTER(NSString*, pushToken)
OVINTA_GETTER(NSNumber*, state)
OVINTA_GETTER(PickupWindow*, pickupWindow)

@end
