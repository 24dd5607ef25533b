#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A circle on the map. The range of the numbers is not checked.
@interface OvintaCircularRegion : OvintaRecord
/// The centre in degrees, the radius in metres.
- (instancetype)initWithLatitude:(double)latitude
                       longitude:(double)longitude
                          radius:(double)radius
                      identifier:(NSString*)identifier;
/// As they were given.
@property(nonatomic, readonly) double latitude;
@property(nonatomic, readonly) double longitude;
@property(nonatomic, readonly) double radius;
@property(nonatomic, readonly, copy) NSString* identifier;
@end

/// The beacons that share a proximity UUID and, where given, a major and a minor number.
@interface OvintaBeaconRegion : OvintaRecord
/// The UUID that the beacons share.
@property(nonatomic, readonly, copy) NSUUID* proximityUUID;
/// Nil: all numbers. A minor without a major means nothing.
@property(nonatomic, readonly, copy, nullable) NSNumber* major;
@property(nonatomic, readonly, copy, nullable) NSNumber* minor;
/// "siteBeaconRegion", for each of the library's.
@property(nonatomic, readonly, copy) NSString* identifier;
@end

NS_ASSUME_NONNULL_END
