#import <OvintaObjC/Averager.h>
#import <OvintaObjC/BeaconIdentifiers.h>

NS_ASSUME_NONNULL_BEGIN

/// What is known of one beacon.
@interface Beacon : OvintaRecord
- (instancetype)initWithIdentifiers:(BeaconIdentifiers*)identifiers
                               rssi:(Averager*)rssi
                           distance:(Averager*)distance
                          scannedAt:(NSDate*)scannedAt;
@property(nonatomic, readonly) BeaconIdentifiers* identifiers;
/// Received signal strength in dBm; a copy, as `distance`.
@property(nonatomic, readonly) Averager* rssi;
/// Estimated distance in metres.
@property(nonatomic, readonly) Averager* distance;
/// When it was last heard.
@property(nonatomic, readonly, copy) NSDate* scannedAt;
@end

NS_ASSUME_NONNULL_END
