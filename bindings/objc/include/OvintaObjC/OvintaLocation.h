#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A position fix on the WGS84 ellipsoid. The range of the numbers is not checked.
@interface OvintaLocation : OvintaRecord
/// A position determined now, of no uncertainty and unknown speed.
- (instancetype)initWithLatitude:(double)latitude longitude:(double)longitude;
/// A position with all that is known of it.
- (instancetype)initWithLatitude:(double)latitude
                       longitude:(double)longitude
              horizontalAccuracy:(double)horizontalAccuracy
                           speed:(double)speed
                       timestamp:(NSDate*)timestamp;
/// Degrees, north and east positive.
@property(nonatomic, readonly) double latitude;
@property(nonatomic, readonly) double longitude;
/// Radius of uncertainty in metres; negative when the position is not valid.
@property(nonatomic, readonly) double horizontalAccuracy;
/// Metres per second; negative when unknown.
@property(nonatomic, readonly) double speed;
/// When the position was determined.
@property(nonatomic, readonly, copy) NSDate* timestamp;
@end

NS_ASSUME_NONNULL_END
