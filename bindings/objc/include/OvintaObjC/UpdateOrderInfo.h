#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Sets the push token of an order.
@interface UpdateOrderInfo : OvintaRecord
/// With the device's push token, as `Ovinta.pushToken`.
- (instancetype)initWithPushToken:(NSString*)pushToken;
/// As it was given.
@property(nonatomic, readonly, copy, nullable) NSString* pushToken;
@end

NS_ASSUME_NONNULL_END
