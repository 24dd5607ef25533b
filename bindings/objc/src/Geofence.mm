#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Geofence;

@implementation Geofence
OVINTA_GETTER(NSString*, latitude)
OVINTA_GETTER(NSString*, longitude)
OVINTA_GETTER(double, radiusMeters)
@end
