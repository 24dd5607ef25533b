#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The span of time in which an order is to be picked up. Nothing checks that `start` comes first.
@interface PickupWindow : OvintaRecord
- (instancetype)initWithStart:(NSDate*)start end:(NSDate*)end;
/// A window of one instant.
- (instancetype)init:(NSDate*)date;
@property(nonatomic, readonly, copy) NSDate* start;
@property(nonatomic, readonly, copy) NSDate* end;
@end

NS_ASSUME_NONNULL_END
