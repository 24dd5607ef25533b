#import <OvintaObjC/CustomerInfo.h>
#import <OvintaObjC/OrderState.h>
#import <OvintaObjC/PickupWindow.h>

NS_ASSUME_NONNULL_BEGIN

/// What an order is created from. Absent fields are not sent; without a state the service chooses.
/// No value is checked: the service judges them.
@interface CreateOrderInfo : OvintaRecord
/// From all its fields; the second one is without a state.
- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
              customerCarColor:(nullable NSString*)customerCarColor
               customerCarType:(nullable NSString*)customerCarType
          customerLicensePlate:(nullable NSString*)customerLicensePlate
                  customerName:(nullable NSString*)customerName
                 customerPhone:(nullable NSString*)customerPhone
                     pushToken:(nullable NSString*)pushToken
                         state:(OrderState)state
                  pickupWindow:(nullable PickupWindow*)pickupWindow;
- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
              customerCarColor:(nullable NSString*)customerCarColor
               customerCarType:(nullable NSString*)customerCarType
          customerLicensePlate:(nullable NSString*)customerLicensePlate
                  customerName:(nullable NSString*)customerName
                 customerPhone:(nullable NSString*)customerPhone
                     pushToken:(nullable NSString*)pushToken
                  pickupWindow:(nullable PickupWindow*)pickupWindow;
/// With the customer fields copied from `customerInfo`, here as in the next.
- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
                  customerInfo:(CustomerInfo*)customerInfo
                     pushToken:(nullable NSString*)pushToken
                         state:(OrderState)state
                  pickupWindow:(nullable PickupWindow*)pickupWindow;
- (instancetype)initWithSiteID:(int64_t)siteID
             partnerIdentifier:(NSString*)partnerIdentifier
                  customerInfo:(CustomerInfo*)customerInfo
                     pushToken:(nullable NSString*)pushToken
                  pickupWindow:(nullable PickupWindow*)pickupWindow;
/// The site where it is to be picked up, and the application's own identifier of the order.
@property(nonatomic, readonly) int64_t siteID;
@property(nonatomic, readonly, copy) NSString* partnerIdentifier;
/// The customer's details, in words for the people at the site.
@property(nonatomic, readonly, copy, nullable) NSString* customerCarColor;
@property(nonatomic, readonly, copy, nullable) NSString* customerCarType;
@property(nonatomic, readonly, copy, nullable) NSString* customerLicensePlate;
@property(nonatomic, readonly, copy, nullable) NSString* customerName;
@property(nonatomic, readonly, copy, nullable) NSString* customerPhone;
/// The device's push token, as `Ovinta.pushToken`.
@property(nonatomic, readonly, copy, nullable) NSString* pushToken;
/// An `OrderState`: the one to begin with.
@property(nonatomic, readonly, copy, nullable) NSNumber* state;
/// When it is to be picked up.
@property(nonatomic, readonly, nullable) PickupWindow* pickupWindow;
@end

NS_ASSUME_NONNULL_END
