#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// The identity of one physical beacon.
@interface BeaconIdentifiers : OvintaRecord
- (instancetype)initWithUuid:(NSUUID*)uuid major:(uint16_t)major minor:(uint16_t)minor;
@property(nonatomic, readonly, copy) NSUUID* uuid;
@property(nonatomic, readonly) uint16_t major;
@property(nonatomic, readonly) uint16_t minor;
@end

NS_ASSUME_NONNULL_END
