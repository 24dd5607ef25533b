#import <OvintaObjC/OvintaRecord.h>

NS_ASSUME_NONNULL_BEGIN

/// A circle round a site.
@interface Geofence : OvintaRecord
/// The centre, in degrees as decimal text; not checked.
@property(nonatomic, readonly, copy) NSString* latitude;
@property(nonatomic, readonly, copy) NSString* longitude;
/// Metres.
@property(nonatomic, readonly) double radiusMeters;
@end

NS_ASSUME_NONNULL_END
