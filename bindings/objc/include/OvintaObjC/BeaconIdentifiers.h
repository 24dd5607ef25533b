#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The identity of one physical beacon, as it sends it itself.
@interface BeaconIdentifiers : OvintaRecord
/// From what the beacon sends.
- (instancetype)initWithUuid:(NSUUID*)uuid major:(uint16_t)major minor:(uint16_t)minor;
/// The proximity UUID, which beacons of one owner share; the numbers tell them apart.
@property(nonatomic, readonly, copy) NSUUID* uuid;
@property(nonatomic, readonly) uint16_t major;
@property(nonatomic, readonly) uint16_t minor;
@end

NS_ASSUME_NONNULL_END
