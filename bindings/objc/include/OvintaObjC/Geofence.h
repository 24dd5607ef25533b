#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A circle round a site.
@interface Geofence : OvintaRecord
/// Degrees as decimal text, as `longitude`.
@property(nonatomic, readonly, copy) NSString* latitude;
@property(nonatomic, readonly, copy) NSString* longitude;
@property(nonatomic, readonly) double radiusMeters;
@end

NS_ASSUME_NONNULL_END
