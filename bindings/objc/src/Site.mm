#import "bindings/objc/src/Conversion.h"

using Cpp = ovinta::Site;

@implementation Site

OVINTA_GETTER(int64_t, id)
OVINTA_GETTER(NSString*, partnerIdentifier)
OVINTA_GETTER(NSString*, name)
OVINTA_GETTER(NSString*, phone)
OVINTA_GETTER(NSString*, streetAddress)
OVINTA_GETTER(NSString*, fullAddress)
OVINTA_GETTER(NSString*, locality)
OVINTA_GETTER(NSString*, region)
OVINTA_GETTER(NSString*, country)
OVINTA_GETTER(NSString*, postalCode)
OVINTA_GETTER(NSString*, longitude)
OVINTA_GETTER(NSString*, latitude)
OVINTA_GETTER(NSString*, instructions)
OVINTA_GETTER(NSString*, descriptionText)
OVINTA_GETTER(NSString*, coverPhotoURL)
OVINTA_GETTER(NSString*, projectAccentColor)
OVINTA_GETTER(NSString*, projectAccentTextColor)
OVINTA_GETTER(NSString*, projectLogoURL)
OVINTA_GETTER(Geofence*, geofence)
OVINTA_GETTER(OvintaLocation*, location)

- (NSNumber*)distanceFrom:(OvintaLocation*)location {
  return twins::toObjC(
      twins::object<Cpp>(self).distance(twins::object<ovinta::platform::Location>(location)));
}

- (NSString*)jsonText {
  return twins::toObjC(ovinta::jsonText(twins::object<Cpp>(self)));
}

@end
