#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A circle on the map.
@interface OvintaCircularRegion : OvintaRecord
/// The centre in degrees, the radius in metres.
- (instancetype)initWithLatitude:(double)latitude
                       longitude:(double)longitude
                          radius:(double)radius
                      identifier:(NSString*)identifier;
@property(nonatomic, readonly) double latitude;
@property(nonatomic, readonly) double longitude;
@property(nonatomic, readonly) double radius;
@property(nonatomic, readonly, copy) NSString* identifier;
@end

/// The beacons that share a proximity UUID and, where given, a major and a minor number.
@interface OvintaBeaconRegion : OvintaRecord
@property(nonatomic, readonly, copy) NSUUID* proximityUUID;
@property(nonatomic, readonly, copy, nullable) NSNumber* major;
@property(nonatomic, readonly, copy, nullable) NSNumber* minor;
@property(nonatomic, readonly, copy) NSString* identifier;
@end

NS_ASSUME_NONNULL_END
