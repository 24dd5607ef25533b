#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The customer's name, vehicle and phone, in words for the people at the site. No value is
/// checked.
@interface CustomerInfo : OvintaRecord
/// What is nil is not sent.
- (instancetype)initWithName:(NSString*)name
                     carType:(nullable NSString*)carType
                    carColor:(nullable NSString*)carColor
                licensePlate:(nullable NSString*)licensePlate
                       phone:(nullable NSString*)phone;
/// The name is always sent, even when it is empty; the others are sent when present.
@property(nonatomic, readonly, copy) NSString* name;
@property(nonatomic, readonly, copy, nullable) NSString* carType;
@property(nonatomic, readonly, copy, nullable) NSString* carColor;
@property(nonatomic, readonly, copy, nullable) NSString* licensePlate;
@property(nonatomic, readonly, copy, nullable) NSString* phone;
@end

NS_ASSUME_NONNULL_END
