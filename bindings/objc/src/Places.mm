#import "bindings/objc/src/Conversion.h"

namespace platform = ovinta::platform;

@implementation OvintaLocation

#define OVINTA_LOCATION (twins::object<platform::Location>(self))

- (instancetype)initWithLatitude:(double)latitude longitude:(double)longitude {
  return [self initWithLatitude:latitude
                      longitude:longitude
             horizontalAccuracy:0
                          speed:-1
                      timestamp:[NSDate date]];
}

- (instancetype)initWithLatitude:(double)latitude
                       longitude:(double)longitude
              horizontalAccuracy:(double)horizontalAccuracy
                           speed:(double)speed
                       timestamp:(NSDate*)timestamp {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(platform::Location{
                     .coordinate = {.latitude = latitude, .longitude = longitude},
                     .horizontalAccuracy = horizontalAccuracy,
                     .speed = speed,
                     .timestamp = twins::date(timestamp)});
               })];
}

- (double)latitude {
  return OVINTA_LOCATION.coordinate.latitude;
}

- (double)longitude {
  return OVINTA_LOCATION.coordinate.longitude;
}

- (double)horizontalAccuracy {
  return OVINTA_LOCATION.horizontalAccuracy;
}

- (double)speed {
  return OVINTA_LOCATION.speed;
}

- (NSDate*)timestamp {
  return twins::toObjC(OVINTA_LOCATION.timestamp);
}

@end

@implementation OvintaCircularRegion

#define OVINTA_CIRCLE (twins::object<platform::CircularRegion>(self))

- (instancetype)initWithLatitude:(double)latitude
                       longitude:(double)longitude
                          radius:(double)radius
                      identifier:(NSString*)identifier {
  return [self initWithNative:twins::initialising(self, [&] {
                 return twins::wrap(platform::CircularRegion{
                     .center = {.latitude = latitude, .longitude = longitude},
                     .radius = radius,
                     .identifier = twins::text(identifier)});
               })];
}

- (double)latitude {
  return OVINTA_CIRCLE.center.latitude;
}

- (double)longitude {
  return OVINTA_CIRCLE.center.longitude;
}

- (double)radius {
  return OVINTA_CIRCLE.radius;
}

- (NSString*)identifier {
  return twins::toObjC(OVINTA_CIRCLE.identifier);
}

@end

using Cpp = platform::IdentifiedBeaconRegion;

@implementation OvintaBeaconRegion
OVINTA_GETTER(NSUUID*, proximityUUID)
OVINTA_GETTER(NSNumber*, major)
OVINTA_GETTER(NSNumber*, minor)
OVINTA_GETTER(NSString*, identifier)
@end
