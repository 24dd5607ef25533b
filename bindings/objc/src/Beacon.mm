#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Beacon;

@implementation Beacon

- (instancetype)initWithIdentifiers:(BeaconIdentifiers*)identifiers
                               rssi:(Averager*)rssi
                           distance:(Averager*)distance
                          scannedAt:(NSDate*)scannedAt {
  return [self
      initWithNative:twins::initialising(self, [&] {
        return twins::wrap(Cpp{.identifiers = twins::object<ovinta::BeaconIdentifiers>(identifiers),
                               .rssi = twins::object<ovinta::Averager>(rssi),
                               .distance = twins::object<ovinta::Averager>(distance),
                               .scannedAt = twins::date(scannedAt)});
      })];
}

OVINTA_GETTER(BeaconIdentifiers*, identifiers)
OVINTA_GETTER(Averager*, rssi)
OVINTA_GETTER(Averager*, distance)
OVINTA_GETTER(NSDate*, scannedAt)

@end
