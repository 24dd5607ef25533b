#import <OvintaObjC/Averager.h>
#import <OvintaObjC/BeaconIdentifiers.h>

NS_ASSUME_NONNULL_BEGIN

/// What is known of one beacon that was heard.
@interface Beacon : OvintaRecord
/// For an application's own tests; the measures are copied.
- (instancetype)initWithIdentifiers:(BeaconIdentifiers*)identifiers
                               rssi:(Averager*)rssi
                           distance:(Averager*)distance
                          scannedAt:(NSDate*)scannedAt;
/// Which beacon it is.
@property(nonatomic, readonly) BeaconIdentifiers* identifiers;
/// Received signal strength in dBm, smoothed; a copy, as `distance`.
@property(nonatomic, readonly) Averager* rssi;
/// Estimated distance in metres, smoothed.
@property(nonatomic, readonly) Averager* distance;
/// When it was last heard.
@property(nonatomic, readonly, copy) NSDate* scannedAt;
@end

NS_ASSUME_NONNULL_END
