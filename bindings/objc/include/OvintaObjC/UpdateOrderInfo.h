#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// Sets the push token of an order.
@interface UpdateOrderInfo : OvintaRecord
- (instancetype)initWithPushToken:(NSString*)pushToken;
@property(nonatomic, readonly, copy, nullable) NSString* pushToken;
@end

NS_ASSUME_NONNULL_END
