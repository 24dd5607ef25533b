#import <OvintaObjC/CustomerInfo.h>
#import <OvintaObjC/OrderState.h>
#import <OvintaObjC/PickupWindow.h>

NS_ASSUME_NONNULL_BEGIN

/// What an order is created from. Absent fields are not sent; without a state the service chooses.
@interface CreateOrderInfo : OvintaRecord
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
@property(nonatomic, readonly) int64_t siteID;
@property(nonatomic, readonly, copy) NSString* partnerIdentifier;
@property(nonatomic, readonly, copy, nullable) NSString* customerCarColor;
@property(nonatomic, readonly, copy, nullable) NSString* customerCarType;
@property(nonatomic, readonly, copy, nullable) NSString* customerLicensePlate;
@property(nonatomic, readonly, copy, nullable) NSString* customerName;
@property(nonatomic, readonly, copy, nullable) NSString* customerPhone;
@property(nonatomic, readonly, copy, nullable) NSString* pushToken;
/// An `OrderState`.
@property(nonatomic, readonly, copy, nullable) NSNumber* state;
@property(nonatomic, readonly, nullable) PickupWindow* pickupWindow;
@end

NS_ASSUME_NONNULL_END
