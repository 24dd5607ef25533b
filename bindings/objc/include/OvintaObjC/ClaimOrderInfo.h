#import <OvintaObjC/CustomerInfo.h>

NS_ASSUME_NONNULL_BEGIN

/// What a customer claims an order with. The push token is always sent; other absent fields are
/// not. No value is checked: the service judges them.
@interface ClaimOrderInfo : OvintaRecord
/// Without a pickup type.
- (instancetype)initWithCustomerCarColor:(nullable NSString*)customerCarColor
                         customerCarType:(nullable NSString*)customerCarType
                    customerLicensePlate:(nullable NSString*)customerLicensePlate
                            customerName:(nullable NSString*)customerName
                           customerPhone:(nullable NSString*)customerPhone
                               pushToken:(NSString*)pushToken;
/// With the customer fields copied from `customerInfo`.
- (instancetype)initWithCustomerInfo:(CustomerInfo*)customerInfo
                           pushToken:(NSString*)pushToken
                          pickupType:(nullable NSString*)pickupType;
/// The customer's details, in words for the people at the site.
@property(nonatomic, readonly, copy, nullable) NSString* customerCarColor;
@property(nonatomic, readonly, copy, nullable) NSString* customerCarType;
@property(nonatomic, readonly, copy, nullable) NSString* customerLicensePlate;
@property(nonatomic, readonly, copy, nullable) NSString* customerName;
@property(nonatomic, readonly, copy, nullable) NSString* customerPhone;
/// The device's push token, as `Ovinta.pushToken`.
@property(nonatomic, readonly, copy, nullable) NSString* pushToken;
/// How the order is to be picked up; sent as it is.
@property(nonatomic, readonly, copy, nullable) NSString* pickupType;
@end

NS_ASSUME_NONNULL_END
