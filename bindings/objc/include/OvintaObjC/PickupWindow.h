#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The span of time in which an order is to be picked up, on the wire to the millisecond. Nothing
/// checks that `start` comes first.
@interface PickupWindow : OvintaRecord
/// A window from one instant to the other.
- (instancetype)initWithStart:(NSDate*)start end:(NSDate*)end;
/// A window of one instant.
- (instancetype)init:(NSDate*)date;
/// The first and the last instant.
@property(nonatomic, readonly, copy) NSDate* start;
@property(nonatomic, readonly, copy) NSDate* end;
@end

NS_ASSUME_NONNULL_END
