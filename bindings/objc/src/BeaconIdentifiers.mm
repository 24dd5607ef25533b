#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::BeaconIdentifiers;

@implementation BeaconIdentifiers

- (instancetype)initWithUuid:(NSUUID*)uuid major:(uint16_t)major minor:(uint16_t)minor {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(Cpp{.uuid = twins::uuid(uuid), .major = major, .minor = minor});
               })];
}

OVINTA_GETTER(NSUUID*, uuid)
OVINTA_GETTER(uint16_t, major)
OVINTA_GETTER(uint16_t, minor)

@end
