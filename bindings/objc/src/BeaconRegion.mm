#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::BeaconRegion;

@implementation BeaconRegion

- (instancetype)initWithUuid:(NSUUID*)uuid major:(NSNumber*)major minor:(NSNumber*)minor {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.uuid = twins::uuid(uuid),
                                        .major = twins::optionalNumber<uint16_t>(major),
                                        .minor = twins::optionalNumber<uint16_t>(minor)});
               })];
}

OVINTA_GETTER(NSUUID*, uuid)
OVINTA_GETTER(NSNumber*, major)
OVINTA_GETTER(NSNumber*, minor)
OVINTA_GETTER(OvintaBeaconRegion*, region)

@end
