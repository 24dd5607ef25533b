#import <OvintaObjC/OvintaRegion.h>

NS_ASSUME_NONNULL_BEGIN

/// Some of the beacons of a site, as the service describes them.
@interface BeaconRegion : OvintaRecord
/// The numbers hold 16 bits, without sign; others raise `NSInvalidArgumentException`.
- (instancetype)initWithUuid:(NSUUID*)uuid
                       major:(nullable NSNumber*)major
                       minor:(nullable NSNumber*)minor;
/// The proximity UUID that the beacons share.
@property(nonatomic, readonly, copy) NSUUID* uuid;
/// Absent: all majors.
@property(nonatomic, readonly, copy, nullable) NSNumber* major;
/// Absent: all minors. Without a major it means nothing.
@property(nonatomic, readonly, copy, nullable) NSNumber* minor;

/// The platform's region for this one, without a minor where there is no major. Every one bears the
/// identifier "siteBeaconRegion".
- (OvintaBeaconRegion*)region;
@end

NS_ASSUME_NONNULL_END
